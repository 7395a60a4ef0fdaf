from typing import Any

# The names of the extension are typed where the package publishes them.
def __getattr__(name: str) -> Any: ...
