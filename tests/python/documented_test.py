"""Runs what docs/python.md shows and compares what it prints."""

import doctest
import sys

failed, tried = doctest.testfile("docs/python.md", module_relative=False, encoding="utf-8")
sys.exit(failed > 0 or tried == 0)
