"""What goes wrong, as exceptions."""

from __future__ import annotations

from typing import NoReturn

from . import _native


class Error(Exception):
    """A question that has no answer, or an input that cannot be read.

    :ivar file: the input that it is about; empty where it is about none
    :ivar cause: what is wrong with it, without the file
    :ivar identifier: the message as the manual lists it, such as ``XMLABRIDGE_F0011``; empty where it is not there
    """

    def __init__(self, file: str, cause: str, identifier: str = "") -> None:
        super().__init__(f"{file}: {cause}" if file and file not in cause else cause)
        self.file = file
        self.cause = cause
        self.identifier = identifier

    def __reduce__(self) -> tuple[type[Error], tuple[str, str, str]]:
        return type(self), (self.file, self.cause, self.identifier)


class InputError(Error):
    """An input that cannot be read, or whose import fails."""


class NoDefinition(InputError):
    """An input that holds no definition of a database."""


class UnknownName(Error):
    """The name of nothing. The cause lists names that are spelled alike."""


class AmbiguousName(Error):
    """The name of several objects. The cause lists them."""


_KINDS: dict[str, type[Error]] = {
    "XMLABRIDGE_E0005": NoDefinition,
    "XMLABRIDGE_F0010": AmbiguousName,
    "XMLABRIDGE_F0011": UnknownName,
    "XMLABRIDGE_F0013": UnknownName,
}


def raise_error(fault: _native.Fault) -> NoReturn:
    """Raises what the module told as the exception that it is."""
    file, _, identifier, cause = fault.args
    raise _KINDS.get(identifier, InputError if file else Error)(file, cause, identifier) from None
