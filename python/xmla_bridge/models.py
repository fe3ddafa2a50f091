"""Models that are open, and what can be asked of them."""

from __future__ import annotations

import os
from collections.abc import Callable, Iterator
from functools import cached_property
from typing import TypeVar, Union

from . import _native, reading
from .answers import Coverage, Diff, Graph, Lineage, Message, ModelObject, Object, Unused
from .errors import raise_error

Input = Union[str, bytes, "os.PathLike[str]", "os.PathLike[bytes]"]
Name = Union[str, Object]
_Answer = TypeVar("_Answer")

_GROUPS = ("tables", "columns", "dimensions", "attributes", "measures", "members", "sets", "expressions", "functions")


def open(input: Input, *, map: Input | None = None) -> Model:
    """Opens one definition or saved model.

    :param input: whatever the program takes as an input: a file, the folder of a project or a semantic model, a
        template, ``estate.db#Sales`` for a model of an estate, ``-`` for standard input
    :param map: a file of rules that give servers, databases and schemas other names
    :raises NoDefinition: when it holds no definition of a database
    :raises InputError: when it cannot be read, or holds several models
    """
    return Model(*_open([input], map, several=False))


def open_all(*inputs: Input, map: Input | None = None) -> Models:
    """Opens many models, over which questions are answered together.

    :param inputs: as :func:`open` takes them, also folders of definitions and estates. One of them that cannot be
        read is an error among the messages.
    :raises InputError: when none can be read
    """
    if not inputs:
        raise ValueError("nothing to open was named")
    return Models(*_open(list(inputs), map, several=True))


class _Answering:
    """What one model and many have in common."""

    def __init__(self, native: _native.OpenedModels, messages: tuple[Message, ...], complete: bool) -> None:
        self._native = native
        self.messages = messages
        """What was noticed while it was read."""
        self.complete = complete
        """Whether all of it could be read; the errors among the messages tell what could not."""

    def trace(self, name: Name, *, depth: int | None = None, values: bool = False) -> Lineage:
        """What an object comes from.

        :param name: a path, a qualified name such as ``[Measures].[Sales]``, an unambiguous part of one, or an object
        :param depth: the maximum number of steps
        :param values: whether only what values flow along is followed
        :raises UnknownName: when nothing is called so
        :raises AmbiguousName: when several objects are
        """
        return self._lineage(name, True, depth, values)

    def impact(self, name: Name, *, depth: int | None = None, values: bool = False) -> Lineage:
        """What depends on an object. Takes and raises what :meth:`trace` does."""
        return self._lineage(name, False, depth, values)

    def unused(self, *groups: str) -> Unused:
        """What nothing uses: of all groups, or of some such as ``measures`` and ``columns``."""
        for group in groups:
            if group not in _GROUPS:
                raise ValueError(f"there is no group {group!r}; there are {', '.join(_GROUPS)}")
        return reading.unused(_ask(lambda: self._native.unused(list(groups))))

    @cached_property
    def graph(self) -> Graph:
        """All objects and the edges between them. It is made once."""
        return reading.graph(_ask(self._native.graph))

    def objects(self, *kinds: str) -> tuple[Object, ...]:
        """All objects, or those of some kinds such as ``measure``, in the order of the model."""
        return self.graph.of_kind(*kinds) if kinds else self.graph.objects

    def _lineage(self, name: Name, upstream: bool, depth: int | None, values: bool) -> Lineage:
        if depth is not None and not 0 <= depth < 2**32:
            raise ValueError(f"{depth} is no number of steps")
        if isinstance(name, Object):
            number = name.id
            return reading.lineage(_ask(lambda: self._native.lineage_of(number, upstream, depth, values)))
        text = _bytes_of(name)
        return reading.lineage(_ask(lambda: self._native.lineage(text, upstream, depth, values)))


class Model(_Answering):
    """One model."""

    @property
    def name(self) -> str:
        """What the definition calls it."""
        return reading.text(self._native.names()[0])

    @property
    def input(self) -> str:
        """What it was opened from."""
        return os.fsdecode(self._native.inputs()[0])

    def find(self, name: str) -> Object:
        """The object of a name. Takes and raises what :meth:`trace` does."""
        return self.trace(name, depth=0).start

    def coverage(self) -> Coverage:
        """How much traces back to database columns, and why the rest does not."""
        return reading.coverage(_ask(self._native.coverage))

    def diff(self, new: Model, *, map: Input | None = None) -> Diff:
        """How another version of the model differs from this one."""
        return reading.diff(_ask(lambda: self._native.diff(new._native, _path_of(map))))

    def document(self) -> reading.Document:
        """The whole model as the export ``json`` writes it."""
        return reading.document(_ask(self._native.document))

    def root(self) -> ModelObject:
        """The whole model as objects that hold others."""
        return reading.model(_ask(self._native.document))

    def __repr__(self) -> str:
        return f"<Model {self.name!r} from {self.input!r}>"


class Models(_Answering):
    """Many models. An object of a database that several of them read is one object."""

    @property
    def names(self) -> tuple[str, ...]:
        """What answers call them, in the order in which they were opened."""
        return tuple(reading.text(name) for name in self._native.names())

    def __len__(self) -> int:
        return len(self._native.inputs())

    def __iter__(self) -> Iterator[Model]:
        return (self._model(place) for place in range(len(self)))

    def __getitem__(self, name: str) -> Model:
        """The model that answers call so."""
        try:
            return self._model(self.names.index(name))
        except ValueError:
            raise KeyError(name) from None

    def _model(self, place: int) -> Model:
        native = self._native.only(place)
        file = os.fsdecode(native.inputs()[0])
        messages = tuple(message for message in self.messages if message.file == file)
        return Model(native, messages, not any(message.level in ("ERROR", "FATAL") for message in messages))

    def __repr__(self) -> str:
        return f"<Models {', '.join(self.names)}>"


def _open(
    inputs: list[Input], map: Input | None, *, several: bool
) -> tuple[_native.OpenedModels, tuple[Message, ...], bool]:
    paths = [_path_of(input) for input in inputs]
    native, messages, complete = _ask(lambda: _native.open(paths, _path_of(map), several))
    told = tuple(Message(level, identifier, text, file) for file, level, identifier, text in messages)
    return native, told, complete


def _ask(question: Callable[[], _Answer]) -> _Answer:
    try:
        return question()
    except _native.Fault as fault:
        raise_error(fault)


def _bytes_of(name: str) -> bytes:
    return name.encode("utf-8", "surrogateescape")


def _path_of(path: Input | None) -> bytes:
    path = os.fsencode(path or b"")
    if b"\0" in path:
        raise ValueError("a path holds a null byte")
    return path
