"""The functions of the extension as functions of Python: with a signature, for pickles, and for a call at other digits."""

import ast
import inspect
from collections.abc import Callable
from typing import Any

from ._context import digits as at_digits


def signature_of(heading: str) -> inspect.Signature:
    """The signature in the first line of a docstring, name(a, b=1), with the keyword `digits` beside."""
    node = ast.parse(f"def {heading}: ...").body[0]
    assert isinstance(node, ast.FunctionDef), heading
    defaults: list[Any] = [inspect.Parameter.empty] * (len(node.args.args) - len(node.args.defaults))
    defaults += [ast.literal_eval(each) for each in node.args.defaults]
    parameters = [
        inspect.Parameter(each.arg, inspect.Parameter.POSITIONAL_OR_KEYWORD, default=default)
        for each, default in zip(node.args.args, defaults)
    ]
    return inspect.Signature([*parameters, inspect.Parameter("digits", inspect.Parameter.KEYWORD_ONLY, default=None)])


def routine(core: Callable[..., Any]) -> Callable[..., Any]:
    """The function of Python around one of the extension."""

    def function(*arguments: Any, digits: int | None = None, **named: Any) -> Any:
        if digits is None:
            return core(*arguments, **named)
        with at_digits(digits):
            return core(*arguments, **named)

    function.__name__ = function.__qualname__ = core.__name__
    function.__module__ = "tesk2mp"
    function.__doc__ = core.__doc__
    heading = " ".join((core.__doc__ or "").partition("\n\n")[0].split())
    setattr(function, "__signature__", signature_of(heading))
    return function
