"""Holds the package to what the program prints, and to what it promises of faults and threads."""

import dataclasses
import json
import os
import pickle
import subprocess
import sys
import tempfile
import threading
import typing
import unittest

import xmla_bridge
from xmla_bridge import answers

PROGRAM = sys.argv.pop(1)
HUTS = "examples/murmeltal-huts.asdatabase"
LOST = "examples/lost-property-create.xmla"
EXAMPLES = [HUTS, LOST, "examples/ferry-line.bim"]


def program(*arguments):
    """What the program prints; the exit code is no matter."""
    return subprocess.run([PROGRAM, *arguments], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL).stdout.decode()


def fields_agree(case, value):
    """Whether fields hold what their types say, one level at a time."""
    waiting = [value]
    while waiting:
        one = waiting.pop()
        hints = typing.get_type_hints(type(one), vars(answers))
        for field in dataclasses.fields(one):
            held = getattr(one, field.name)
            hint = hints[field.name]
            kinds = typing.get_args(hint) if typing.get_origin(hint) is not tuple else (tuple,)
            kinds = tuple(typing.get_origin(kind) or kind for kind in kinds or (hint,))
            if typing.get_origin(hint) in (dict, typing.Literal):
                continue
            case.assertIsInstance(held, kinds, f"{type(one).__name__}.{field.name}")
            if isinstance(held, tuple):
                waiting.extend(item for item in held if dataclasses.is_dataclass(item))


class Answers(unittest.TestCase):
    """The program and the package answer alike."""

    def test_texts_are_those_of_the_program(self):
        for path in EXAMPLES:
            model = xmla_bridge.open(path)
            with self.subTest(path):
                self.assertEqual(str(model.coverage()), program("coverage", path))
                self.assertEqual(str(model.unused()), program("unused", path))
                for one in model.objects("measure", "calculatedMeasure")[:5]:
                    for question, answer in (("trace", model.trace), ("impact", model.impact)):
                        self.assertEqual(str(answer(one)), program(question, path, one.path))
                        self.assertEqual(str(answer(one.path, depth=1)), program(question, path, one.path, "--depth", "1"))
        old, new = map(xmla_bridge.open, EXAMPLES[:2])
        self.assertEqual(str(old.diff(new)), program("diff", *EXAMPLES[:2]))
        self.assertTrue(old.diff(new))
        many = xmla_bridge.open_all(*EXAMPLES)
        self.assertEqual(str(many.unused("columns")), program("unused", *EXAMPLES, "--kind", "columns"))

    def test_objects_are_whole(self):
        model = xmla_bridge.open(HUTS)
        other = xmla_bridge.open(LOST)
        for value in (model.graph, model.trace("[Measures].[Nights]"), model.coverage(), model.unused(), model.diff(other)):
            fields_agree(self, value)
            self.assertEqual(pickle.loads(pickle.dumps(value)), value)
        graph = model.graph
        for edge in graph.edges:
            self.assertIn(graph[edge.source], graph.sources_of(graph[edge.target]))
            self.assertIn(graph[edge.target], graph.dependants_of(graph[edge.source]))
        for one in graph:
            owner = graph.owner_of(one)
            self.assertTrue(owner is None or one in graph.parts_of(owner))
        part = model.trace("[Measures].[Revenue per Night]")
        self.assertTrue(set(part.objects) <= set(graph.objects) and set(part.edges) <= set(graph.edges))
        numbers = [one.id for one in model.root().walk()]
        self.assertEqual(numbers, sorted(set(numbers)))

    def test_saved_models_and_estates(self):
        with tempfile.TemporaryDirectory() as folder:
            saved, estate = os.path.join(folder, "m.xml"), os.path.join(folder, "e.db")
            program("import", HUTS, "-o", saved)
            program("import", HUTS, "--estate", estate)
            definition = xmla_bridge.open(HUTS)
            for path in (saved, os.fsencode(saved), estate):
                model = xmla_bridge.open(path)
                self.assertEqual(str(model.coverage()), str(definition.coverage()))
                self.assertFalse(definition.diff(model))
            exported = json.loads(program("export", saved, "--format", "json", "-o", "-"))
            self.assertEqual(xmla_bridge.open(saved).document(), exported)
            with self.assertRaises(xmla_bridge.InputError) as several:
                program("import", LOST, "--estate", estate)
                xmla_bridge.open(estate)
            self.assertEqual(several.exception.file, estate)
            self.assertEqual(len(xmla_bridge.open_all(estate)), 2)


class Faults(unittest.TestCase):
    """Every fault is an exception that names the file and the cause."""

    def test_inputs(self):
        with tempfile.NamedTemporaryFile(suffix=".xmla") as other, self.assertRaises(xmla_bridge.NoDefinition) as none:
            other.write(b"<Alter/>")
            other.flush()
            xmla_bridge.open(other.name)
        self.assertEqual((none.exception.file, none.exception.identifier), (other.name, "XMLABRIDGE_E0005"))
        for path in ("no-such-file", b"no-such-\xff", ""):
            with self.assertRaises(xmla_bridge.Error) as missing:
                xmla_bridge.open(path)
            self.assertTrue(missing.exception.cause)
        with self.assertRaises(xmla_bridge.InputError):
            xmla_bridge.open(HUTS, map="no-such-map")
        with self.assertRaises(ValueError):
            xmla_bridge.open("nul\0")
        many = xmla_bridge.open_all("no-such-file", HUTS)
        self.assertEqual((many.names, many.complete, many.messages[0].file), (("Murmeltal Huts",), False, "no-such-file"))

    def test_questions(self):
        model = xmla_bridge.open(HUTS)
        with self.assertRaises(xmla_bridge.UnknownName):
            model.trace("nothing at all")
        with self.assertRaises(xmla_bridge.AmbiguousName) as several:
            model.trace("a")
        self.assertEqual(str(pickle.loads(pickle.dumps(several.exception))), str(several.exception))
        for wrong in (lambda: model.unused("yetis"), lambda: model.trace("[Measures].[Nights]", depth=-1)):
            self.assertRaises(ValueError, wrong)
        foreign = dataclasses.replace(model.objects()[0], id=2**32 - 1)
        self.assertRaises(xmla_bridge.Error, model.trace, foreign)

    def test_secrets_are_masked(self):
        with tempfile.NamedTemporaryFile("w", suffix=";Password=hunter2;.xmla") as secret:
            with self.assertRaises(xmla_bridge.Error) as told:
                xmla_bridge.open(secret.name)
        self.assertNotIn("hunter2", str(told.exception) + told.exception.file)


class Threads(unittest.TestCase):
    def test_questions_of_many_threads(self):
        model = xmla_bridge.open(HUTS)
        expected = str(model.coverage())
        told = []

        def ask():
            told.append(str(model.coverage()) == expected and str(xmla_bridge.open(HUTS).coverage()) == expected)

        threads = [threading.Thread(target=ask) for _ in range(8)]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        self.assertEqual(told, [True] * 8)


if __name__ == "__main__":
    unittest.main()
