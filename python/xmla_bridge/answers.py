"""What models answer: plain values, which can be compared, kept and pickled."""

from __future__ import annotations

from collections.abc import Iterable, Iterator
from dataclasses import dataclass, field
from functools import cached_property
from typing import Any, Literal

Direction = Literal["upstream", "downstream"]


@dataclass(frozen=True, slots=True)
class Message:
    """Something that was noticed while an input was read."""

    level: str  #: ``ERROR``, ``WARNING``, ``STATUS``, ``INFO``
    identifier: str  #: as the manual lists it
    text: str
    file: str = ""  #: of several inputs, the one that it is about

    def __str__(self) -> str:
        text = f"[{self.identifier}] {self.text}" if self.identifier else self.text
        return f"{self.file}: {text}" if self.file else text


@dataclass(frozen=True, slots=True)
class OpenName:
    """A name in an expression that leads to no attribute or measure."""

    name: str
    state: str
    note: str = ""  #: what it is, or the nearest spelling


@dataclass(frozen=True, slots=True)
class Object:
    """An object of a model, or a table or column of a database behind it."""

    id: int  #: what edges and owners call it, and questions take; good as long as the models are open
    kind: str  #: ``measure``, ``databaseColumn`` ...; ``xmla-bridge help kinds`` lists all
    name: str
    qualified_name: str  #: as expressions write it, ``[Measures].[Nights]``
    path: str
    owner: int | None = None  #: what it is a part of
    model: str = ""  #: of several models, the one that it is in; empty for what a database holds
    expression: str = ""
    language: str = ""  #: of the expression: ``mdx``, ``dax``, ``sql`` or ``m``
    aggregation: str = ""
    open_names: tuple[OpenName, ...] = ()

    def __str__(self) -> str:
        return self.qualified_name


@dataclass(frozen=True, slots=True)
class Edge:
    """A step of lineage: ``target`` names ``source``."""

    source: int
    target: int
    kind: str
    text: str = ""
    found_by_graph: bool = False  #: whether the model itself does not have it
    replaces: bool = False


@dataclass(frozen=True)
class Graph:
    """Objects and the edges between them."""

    objects: tuple[Object, ...]
    edges: tuple[Edge, ...]
    notes: tuple[str, ...] = ()  #: what could make the answer another one

    def __getitem__(self, id: int) -> Object:
        """The object of this number."""
        return self._by_id[id]

    def __iter__(self) -> Iterator[Object]:
        return iter(self.objects)

    def __len__(self) -> int:
        return len(self.objects)

    def of_kind(self, *kinds: str) -> tuple[Object, ...]:
        """The objects of these kinds, in their order."""
        return tuple(one for one in self.objects if one.kind in kinds)

    def owner_of(self, one: Object) -> Object | None:
        """What an object is a part of, if that is in the graph."""
        return None if one.owner is None else self._by_id.get(one.owner)

    def parts_of(self, one: Object) -> tuple[Object, ...]:
        """The parts of an object that are in the graph."""
        return self._parts.get(one.id, ())

    def sources_of(self, one: Object) -> tuple[Object, ...]:
        """What an object comes from directly."""
        return self._sources.get(one.id, ())

    def dependants_of(self, one: Object) -> tuple[Object, ...]:
        """What depends on an object directly."""
        return self._dependants.get(one.id, ())

    @cached_property
    def _by_id(self) -> dict[int, Object]:
        return {one.id: one for one in self.objects}

    @cached_property
    def _parts(self) -> dict[int, tuple[Object, ...]]:
        return _grouped((one.owner, one) for one in self.objects if one.owner is not None)

    @cached_property
    def _sources(self) -> dict[int, tuple[Object, ...]]:
        return _grouped((edge.target, self._by_id[edge.source]) for edge in self.edges)

    @cached_property
    def _dependants(self) -> dict[int, tuple[Object, ...]]:
        return _grouped((edge.source, self._by_id[edge.target]) for edge in self.edges)


@dataclass(frozen=True)
class Lineage(Graph):
    """What an object comes from, or what depends on it. As text it is the tree that the program prints."""

    direction: Direction = "upstream"
    starts: tuple[Object, ...] = ()  #: what was asked for; of several models, in each that has it
    text: str = field(default="", repr=False)

    @property
    def start(self) -> Object:
        """What was asked for, in the first of the models."""
        return self.starts[0]

    def __str__(self) -> str:
        return self.text


@dataclass(frozen=True, slots=True)
class Count:
    """Things of one kind, and how many of them trace back to a database column."""

    count: int
    reached: int
    row_counts: int  #: of all, the measures that count rows


@dataclass(frozen=True, slots=True)
class Gap:
    """Something that traces back to no database column, and why."""

    path: str
    qualified_name: str
    reason: str


@dataclass(frozen=True, slots=True)
class CubeCoverage:
    """How far the lineage of a cube reaches, or of the dimensions that are in none."""

    cube: str | None  #: none for the dimensions of the database
    attributes: Count
    measures: Count | None
    gaps: tuple[Gap, ...]


@dataclass(frozen=True, slots=True)
class UnresolvedName:
    """A name that leads to nothing, and the object in whose expression it stands."""

    path: str
    qualified_name: str
    name: OpenName


@dataclass(frozen=True, slots=True)
class Coverage:
    """How much of a model traces back to database columns."""

    percent: int
    names: dict[str, int]  #: how many names lead to nothing, by their state
    cubes: tuple[CubeCoverage, ...]
    open_names: tuple[UnresolvedName, ...]
    notes: tuple[str, ...] = ()
    text: str = field(default="", repr=False)

    def __str__(self) -> str:
        return self.text


@dataclass(frozen=True, slots=True)
class Shown:
    """What shows something although nothing uses it."""

    relation: str
    kind: str
    name: str
    path: str


@dataclass(frozen=True, slots=True)
class UnusedObject:
    """Something that nothing uses."""

    group: str  #: ``tables``, ``columns``, ``measures`` ...
    kind: str
    name: str
    qualified_name: str
    path: str
    state: str  #: ``unused``, or ``shown`` where cubes or perspectives show it
    model: str = ""  #: of several models, the one that it is in
    hidden: bool = False
    parts: int = 0  #: how many columns or attributes it has, none of which is used
    shown_by: tuple[Shown, ...] = ()


@dataclass(frozen=True, slots=True)
class Unused:
    """What nothing uses, by group, in the order of the models."""

    objects: tuple[UnusedObject, ...]
    notes: tuple[str, ...] = ()
    text: str = field(default="", repr=False)

    def __iter__(self) -> Iterator[UnusedObject]:
        return iter(self.objects)

    def __len__(self) -> int:
        return len(self.objects)

    def __str__(self) -> str:
        return self.text


@dataclass(frozen=True, slots=True)
class DiffObject:
    """Something that differs between two versions."""

    kind: str
    name: str
    path: str
    old_name: str = ""  #: where that was another one
    parts: int = 0


@dataclass(frozen=True, slots=True)
class BrokenName:
    """A name that led to something, and does no longer."""

    object: DiffObject
    name: str
    note: str = ""


@dataclass(frozen=True, slots=True)
class Change:
    """What changed about something."""

    about: str  #: ``setting``, ``expression``, ``relation`` or ``name``
    what: str
    old: str | None = None
    new: str | None = None
    only_layout: bool = False  #: whether an expression differs in white space and comments alone
    hidden: bool = False


@dataclass(frozen=True, slots=True)
class ChangedObjects:
    """Objects about which the same changed."""

    objects: tuple[DiffObject, ...]
    changes: tuple[Change, ...]


@dataclass(frozen=True, slots=True)
class Reordered:
    """Things that stand in another order."""

    kind: str
    moved: tuple[str, ...]
    owner: str = ""


@dataclass(frozen=True, slots=True)
class Diff:
    """How two models differ. It is true where they do."""

    old: str
    new: str
    broken: tuple[BrokenName, ...]
    lost_lineage: tuple[DiffObject, ...]  #: what traced back to a database column, and does no longer
    changed: tuple[ChangedObjects, ...]
    added: tuple[DiffObject, ...]
    removed: tuple[DiffObject, ...]
    renamed: tuple[ChangedObjects, ...]
    moved: tuple[ChangedObjects, ...]
    reordered: tuple[Reordered, ...]
    affected_count: int  #: how many objects depend on what differs, beside those that are told of
    affected: tuple[DiffObject, ...]  #: the first of them
    notes: tuple[str, ...] = ()
    text: str = field(default="", repr=False)

    def __bool__(self) -> bool:
        groups = (self.broken, self.lost_lineage, self.changed, self.added, self.removed, self.renamed, self.moved)
        return any(groups) or bool(self.reordered)

    def __str__(self) -> str:
        return self.text


@dataclass(frozen=True, slots=True)
class ModelObject:
    """An object of the whole model, with what it holds."""

    id: int  #: what links call it; another number than that of lineage
    kind: str  #: the class, ``TAVMeasure``
    name: str
    members: dict[str, Any]  #: attributes, properties, and links as the numbers of other objects
    parts: dict[str, tuple[ModelObject, ...]]

    def walk(self) -> Iterator[ModelObject]:
        """The object and all that it holds, in the order of the document."""
        waiting = [self]
        while waiting:
            one = waiting.pop()
            yield one
            for parts in reversed(one.parts.values()):
                waiting.extend(reversed(parts))


def _grouped(pairs: Iterable[tuple[int, Object]]) -> dict[int, tuple[Object, ...]]:
    """The second of each pair by the first, each once."""
    groups: dict[int, dict[int, Object]] = {}
    for key, one in pairs:
        groups.setdefault(key, {})[one.id] = one
    return {key: tuple(group.values()) for key, group in groups.items()}
