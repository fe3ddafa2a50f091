"""Holds the package to what the program prints, and to what it promises of faults and threads."""

import dataclasses
import json
import os
import pickle
import shutil
import signal
import subprocess
import sys
import tempfile
import threading
import time
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

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name

    def saved(self, path):
        """The model of a definition as the program saves it."""
        saved = os.path.join(self.folder, os.path.basename(path) + ".xml")
        program("import", path, "-o", saved)
        return saved

    def test_texts_are_those_of_the_program(self):
        saved = {path: self.saved(path) for path in EXAMPLES}
        for path, model in ((path, xmla_bridge.open(path)) for path in EXAMPLES):
            with self.subTest(path):
                self.assertEqual(str(model.coverage()), program("coverage", saved[path]))
                self.assertEqual(str(model.unused()), program("unused", saved[path]))
                for one in model.objects("measure", "calculatedMeasure")[:3]:
                    for question, answer in (("trace", model.trace), ("impact", model.impact)):
                        self.assertEqual(str(answer(one)), program(question, saved[path], one.path))
                        step = program(question, saved[path], one.path, "--depth", "1")
                        self.assertEqual(str(answer(one.path, depth=1)), step)
        old, new = list(saved.values())[:2]
        diff = xmla_bridge.open(old).diff(xmla_bridge.open(new))
        self.assertEqual(str(diff), program("diff", old, new))
        self.assertTrue(diff)
        many = xmla_bridge.open_all(*saved.values())
        self.assertEqual(str(many.unused("columns")), program("unused", *saved.values(), "--kind", "columns"))
        exported = json.loads(program("export", old, "--format", "json", "-o", "-"))
        self.assertEqual(xmla_bridge.open(old).document(), exported)

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

    def test_every_kind_of_input(self):
        estate = os.path.join(self.folder, "e.db")
        program("import", HUTS, "--estate", estate)
        definition = xmla_bridge.open(HUTS)
        saved = self.saved(HUTS)
        for path in (saved, os.fsencode(saved), estate, f"{estate}#Murmeltal Huts"):
            model = xmla_bridge.open(path)
            self.assertEqual(str(model.coverage()), str(definition.coverage()))
            self.assertFalse(definition.diff(model))
        program("import", LOST, "--estate", estate)
        with self.assertRaises(xmla_bridge.InputError) as several:
            xmla_bridge.open(estate)
        self.assertEqual(several.exception.file, estate)
        both = xmla_bridge.open_all(estate)
        self.assertEqual({model.name for model in both}, {"Murmeltal Huts", "Lost Property"})
        asked = "import xmla_bridge; print(xmla_bridge.open('-').name)"
        with open(LOST, "rb") as piped:
            told = subprocess.run([sys.executable, "-c", asked], stdin=piped, stdout=subprocess.PIPE, check=True)
        self.assertEqual(told.stdout, b"Lost Property\n")


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
    def test_interrupts(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        for copy in range(150):
            shutil.copy(HUTS, os.path.join(folder.name, f"{copy}.asdatabase"))
        begin = time.monotonic()
        xmla_bridge.open_all(folder.name)
        whole = time.monotonic() - begin
        begin = time.monotonic()
        threading.Timer(whole / 20, os.kill, (os.getpid(), signal.SIGINT)).start()
        with self.assertRaises(KeyboardInterrupt):
            xmla_bridge.open_all(folder.name)
        self.assertLess(time.monotonic() - begin, whole / 2)

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
