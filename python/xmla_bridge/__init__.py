"""Metadata models with lineage from Analysis Services definitions.

    >>> import xmla_bridge
    >>> model = xmla_bridge.open("examples/murmeltal-huts.asdatabase")
    >>> print(model.trace("[Measures].[Nights]"))

:func:`open` reads a definition or a saved model, :func:`open_all` many of them. What they answer are plain values;
what goes wrong is an :class:`Error`.
"""

from . import _native
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
    Message,
    ModelObject,
    Object,
    OpenName,
    Reordered,
    Shown,
    UnresolvedName,
    Unused,
    UnusedObject,
)
from .errors import AmbiguousName, Error, InputError, NoDefinition, UnknownName
from .models import Model, Models, open, open_all

__version__: str = _native.version

__all__ = [
    "AmbiguousName", "BrokenName", "Change", "ChangedObjects", "Count", "Coverage", "CubeCoverage", "Diff",
    "DiffObject", "Edge", "Error", "Gap", "Graph", "InputError", "Lineage", "Message", "Model", "ModelObject",
    "Models", "NoDefinition", "Object", "OpenName", "Reordered", "Shown", "UnknownName", "UnresolvedName", "Unused",
    "UnusedObject", "open", "open_all",
]  # fmt: skip
