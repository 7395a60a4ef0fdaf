"""The functions of the extension as functions of Python: with a signature, for pickles, and for a call at other digits."""

import ast
import contextlib
import inspect
from collections.abc import Callable
from typing import Any

from . import _progress, _truth
from ._context import at
from ._errors import InvalidType, refusal

# Those that may take long say how far they are on request; for the others there is `with progress(report)`.
_LONG = {
    *("solve", "refine", "inverse", "determinant", "multiply", "minimum_norm", "solve_iteratively", "polynomial_zeros"),
    *("eigenvalues", "eigen", "symmetric_eigen", "symmetric_eigenvalues", "svd", "singular_values", "schur"),
    *("fft", "ifft", "rfft", "irfft", "fftn", "ifftn", "convolve", "expm", "sqrtm", "logm"),
    *("eigsh", "eigs", "svds", "lsmr"),
}


def signature_of(heading: str, keywords: list[str]) -> inspect.Signature:
    """The signature in the first line of a docstring, name(a, b=1), with keywords that are None by default."""
    node = ast.parse(f"def {heading}: ...").body[0]
    assert isinstance(node, ast.FunctionDef), heading
    defaults: list[Any] = [inspect.Parameter.empty] * (len(node.args.args) - len(node.args.defaults))
    defaults += [ast.literal_eval(each) for each in node.args.defaults]
    parameters = [
        inspect.Parameter(each.arg, inspect.Parameter.POSITIONAL_OR_KEYWORD, default=default)
        for each, default in zip(node.args.args, defaults)
    ]
    parameters += [inspect.Parameter(each, inspect.Parameter.KEYWORD_ONLY, default=None) for each in keywords]
    return inspect.Signature(parameters)


def _explained(core: Callable[..., Any], signature: inspect.Signature) -> Callable[..., Any]:
    """The function, which says of arguments that it does not take what a function of Python says."""

    def call(*arguments: Any, **named: Any) -> Any:
        try:
            return core(*arguments, **named)
        except TypeError as error:
            # One of a function that was given has that function's frame below.
            in_callback = error.__traceback__ is not None and error.__traceback__.tb_next is not None
            if in_callback or type(error) is not TypeError or "incompatible function arguments" not in str(error):
                raise
            try:
                signature.bind(*arguments, **named)
                reason = f"arguments of other types than in {core.__name__}{signature}"
            except TypeError as refused:
                reason = f"{core.__name__}(): {refused}"
            raise refusal(InvalidType, reason) from None

    call.__name__, call.__doc__ = core.__name__, core.__doc__
    return call


def routine(core: Callable[..., Any]) -> Callable[..., Any]:
    """The function of Python around one of the extension."""
    heading = " ".join((core.__doc__ or "").partition("\n\n")[0].split())
    keywords = ["digits", "progress"] if core.__name__ in _LONG else ["digits"]
    signature = signature_of(heading, keywords)
    iterates = "monitor" in signature.parameters
    core = _explained(core, signature_of(heading, []))

    def in_scopes(digits: int | None, report: Any, arguments: Any, named: dict[str, Any]) -> Any:
        with at(digits):
            work = core
            if _truth.wanted():
                work = lambda *arguments, **named: _truth.call(core, arguments, named)
            report = _progress.current() if report is None else report
            if report is None:
                return work(*arguments, **named)
            if iterates:
                # A monitor may be the last of many arguments. What cannot be called is the routine's to say.
                with contextlib.suppress(TypeError):
                    named, arguments = signature.bind_partial(*arguments, **named).arguments, ()
            return _progress.call(work, report, arguments, named, iterates)

    if core.__name__ in _LONG:

        def function(*arguments: Any, digits: int | None = None, progress: Any = None, **named: Any) -> Any:
            if digits is None and progress is None and not _progress.scopes:
                return core(*arguments, **named)
            return in_scopes(digits, progress, arguments, named)

    else:

        def function(*arguments: Any, digits: int | None = None, **named: Any) -> Any:
            if digits is None and not _progress.scopes:
                return core(*arguments, **named)
            return in_scopes(digits, None, arguments, named)

    function.__name__ = function.__qualname__ = core.__name__
    function.__module__ = "tesk2mp"
    function.__doc__ = core.__doc__
    setattr(function, "__signature__", signature)
    return function
