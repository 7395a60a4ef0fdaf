"""What goes wrong in the library, as exceptions."""

from decimal import Decimal
from typing import Any


class Error(Exception):
    """A routine failed.

    routine: the library's name of it. code: its failure number. label: the label of its message, 99999 for a routine's
    first one, 0 when the C++ interface itself refused; no name and 0 when an argument was refused before any. text: the message, in which the library counts from 1. values: the
    values in the text.
    """

    routine: str
    code: int
    label: int
    text: str
    values: tuple[int | Decimal | str, ...]

    def __init__(
        self, message: str, routine: str, code: int, label: int, text: str, values: tuple[int | Decimal | str, ...]
    ) -> None:
        super().__init__(message)
        self.routine = routine
        self.code = code
        self.label = label
        self.text = text
        self.values = values

    def __reduce__(self) -> tuple[Any, ...]:
        return type(self), (str(self), self.routine, self.code, self.label, self.text, self.values)


class InvalidType(Error, TypeError):
    """Something that is no number, or a number of a kind that is refused."""


class InvalidArgument(Error, ValueError):
    """The arguments were refused; nothing was computed."""


class Undecided(InvalidArgument):
    """A question about a number with a bound, x < 0 or another, that the bound does not decide."""


class NumericalFailure(Error, ArithmeticError):
    """The arguments were right, but the mathematics failed: a singular matrix, no convergence."""


def refusal(kind: type[Error], text: str) -> Error:
    """An exception of that class for an argument that no routine has seen."""
    return kind(text, "", 0, 0, text, ())


for _kind in (Error, InvalidType, InvalidArgument, NumericalFailure):
    _kind.__module__ = "tesk2mp"
Undecided.__module__ = "tesk2mp.proven"
