"""Runs unittest classes with a line "ok ..." or "not ok ..." for each test, and the plan at the end."""

from __future__ import annotations

import sys
import traceback
import unittest
from typing import Any


class _Lines(unittest.TestResult):
    def addSuccess(self, test: unittest.TestCase) -> None:
        print(f"ok {test.id()}", flush=True)

    def addFailure(self, test: unittest.TestCase, err: Any) -> None:
        super().addFailure(test, err)
        print(f"not ok {test.id()}", flush=True)
        traceback.print_exception(*err, file=sys.stderr)

    def addError(self, test: unittest.TestCase, err: Any) -> None:
        self.addFailure(test, err)


def run(*classes: type[unittest.TestCase]) -> int:
    """The exit status: 0 only if there were tests and all passed."""
    suite = unittest.TestSuite(
        unittest.defaultTestLoader.loadTestsFromTestCase(one) for one in classes
    )
    result = _Lines()
    suite.run(result)
    print(f"1..{result.testsRun}", flush=True)
    return 0 if result.testsRun > 0 and result.wasSuccessful() else 1
