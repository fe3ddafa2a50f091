"""The documents of answers, read into the classes that stand for them."""

from __future__ import annotations

import json
from collections.abc import Sequence
from typing import Any

from .answers import (
    BrokenName,
    Change,
    ChangedObjects,
    Count,
    Coverage,
    CubeCoverage,
    Diff,
    DiffObject,
    Edge,
    Gap,
    Graph,
    Lineage,
    ModelObject,
    Object,
    OpenName,
    Reordered,
    Shown,
    UnresolvedName,
    Unused,
    UnusedObject,
)

Document = dict[str, Any]


def document(answer: bytes) -> Document:
    """The document of an answer. Bytes that are no UTF-8 come from names that never were."""
    return json.loads(answer.decode("utf-8", "replace"))


def text(answer: bytes) -> str:
    return answer.decode("utf-8", "replace")


def graph(answer: bytes) -> Graph:
    read = document(answer)
    return Graph(_objects(read), _edges(read), _notes(read))


def lineage(answer: tuple[bytes, bytes]) -> Lineage:
    read = document(answer[0])
    objects = _objects(read)
    by_id = {one.id: one for one in objects}
    starts = read["starts"] if "starts" in read else [read["start"]]
    return Lineage(
        objects=objects,
        edges=_edges(read),
        notes=_notes(read),
        direction=read["direction"],
        starts=tuple(by_id[start] for start in starts),
        text=text(answer[1]),
    )


def coverage(answer: tuple[bytes, bytes]) -> Coverage:
    read = document(answer[0])
    names = tuple(
        UnresolvedName(open["path"], open["qualifiedName"], _open_name(open)) for open in read["openNames"]
    )
    cubes = tuple(_cube(cube) for cube in read["cubes"])
    return Coverage(read["percent"], read["names"], cubes, names, _notes(read), text(answer[1]))


def unused(answer: tuple[bytes, bytes]) -> Unused:
    read = document(answer[0])
    models = read["models"] if "models" in read else [{"model": "", "groups": read["groups"]}]
    objects = tuple(
        _unused(model["model"], group["name"], node)
        for model in models
        for group in model["groups"]
        for node in group["nodes"]
    )
    return Unused(objects, _notes(read), text(answer[1]))


def diff(answer: tuple[bytes, bytes]) -> Diff:
    read = document(answer[0])
    return Diff(
        old=read["old"],
        new=read["new"],
        broken=tuple(BrokenName(_diff_object(one), one["broken"], one.get("note", "")) for one in read["broken"]),
        lost_lineage=_diff_objects(read["lostLineage"]),
        changed=_changed(read["changed"]),
        added=_diff_objects(read["added"]),
        removed=_diff_objects(read["removed"]),
        renamed=_changed(read["renamed"]),
        moved=_changed(read["moved"]),
        reordered=tuple(
            Reordered(one["kind"], tuple(one["moved"]), one.get("owner", "")) for one in read["reordered"]
        ),
        affected_count=read["affected"]["count"],
        affected=_diff_objects(read["affected"]["first"]),
        notes=_notes(read),
        text=text(answer[1]),
    )


def model(answer: bytes) -> ModelObject:
    """The whole model. Its parts are made before what holds them."""
    root = document(answer)["model"]
    order = [root]
    for one in order:
        for parts in _parts(one).values():
            order.extend(parts)
    made: dict[int, ModelObject] = {}
    for one in reversed(order):
        parts = {role: tuple(made[part["id"]] for part in parts) for role, parts in _parts(one).items()}
        members = {key: value for key, value in one.items() if key not in parts and key not in ("id", "class", "name")}
        made[one["id"]] = ModelObject(one["id"], one["class"], one["name"], members, parts)
    return made[root["id"]]


def _parts(one: Document) -> dict[str, list[Document]]:
    return {key: value for key, value in one.items() if isinstance(value, list) and isinstance(value[0], dict)}


def _notes(read: Document) -> tuple[str, ...]:
    return tuple(read.get("notes", ()))


def _open_name(read: Document) -> OpenName:
    return OpenName(read["name"], read["state"], read.get("note", ""))


def _objects(read: Document) -> tuple[Object, ...]:
    return tuple(
        Object(
            id=node["id"],
            kind=node["kind"],
            name=node["name"],
            qualified_name=node["qualifiedName"],
            path=node["path"],
            owner=node.get("owner"),
            model=node.get("model", ""),
            expression=node.get("expression", ""),
            language=node.get("language", ""),
            aggregation=node.get("aggregation", ""),
            open_names=tuple(_open_name(name) for name in node.get("openNames", ())),
        )
        for node in read["nodes"]
    )


def _edges(read: Document) -> tuple[Edge, ...]:
    return tuple(
        Edge(
            edge["from"],
            edge["to"],
            edge["kind"],
            edge.get("text", ""),
            edge.get("foundByGraph", False),
            edge.get("replaces", False),
        )
        for edge in read["edges"]
    )


def _count(read: Document) -> Count:
    return Count(read["count"], read["reached"], read["rowCounts"])


def _cube(read: Document) -> CubeCoverage:
    measures = _count(read["measures"]) if "measures" in read else None
    gaps = tuple(Gap(gap["path"], gap["qualifiedName"], gap["reason"]) for gap in read["gaps"])
    return CubeCoverage(read["cube"], _count(read["attributes"]), measures, gaps)


def _unused(model: str, group: str, node: Document) -> UnusedObject:
    return UnusedObject(
        group=group,
        kind=node["kind"],
        name=node["name"],
        qualified_name=node["qualifiedName"],
        path=node["path"],
        state=node["state"],
        model=model,
        hidden=node.get("hidden", False),
        parts=node.get("parts", 0),
        shown_by=tuple(
            Shown(shown["relation"], shown["kind"], shown["name"], shown["path"]) for shown in node.get("shownBy", ())
        ),
    )


def _diff_object(read: Document) -> DiffObject:
    return DiffObject(read["kind"], read["name"], read["path"], read.get("oldName", ""), read.get("parts", 0))


def _diff_objects(read: Sequence[Document]) -> tuple[DiffObject, ...]:
    return tuple(_diff_object(one) for one in read)


def _change(read: Document) -> Change:
    return Change(
        read["about"],
        read["what"],
        read.get("old"),
        read.get("new"),
        read.get("onlyLayout", False),
        read.get("hidden", False),
    )


def _changed(read: Sequence[Document]) -> tuple[ChangedObjects, ...]:
    return tuple(
        ChangedObjects(_diff_objects(one["objects"]), tuple(_change(change) for change in one["changes"]))
        for one in read
    )
