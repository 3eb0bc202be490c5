"""Runs a unittest class and writes its results as JUnit does."""

import sys
import time
import unittest
from xml.sax.saxutils import quoteattr


class Result(unittest.TextTestResult):
    def __init__(self, *arguments):
        super().__init__(*arguments)
        self.cases = []  # name, seconds, outcome

    def startTest(self, test):
        super().startTest(test)
        self.began = time.monotonic()

    def note(self, test, outcome):
        name = getattr(test, "_testMethodName", str(test))
        self.cases.append((name, time.monotonic() - getattr(self, "began", time.monotonic()), outcome))

    def addSuccess(self, test):
        super().addSuccess(test)
        self.note(test, "passed")

    def addFailure(self, test, error):
        super().addFailure(test, error)
        self.note(test, "failure")

    def addError(self, test, error):
        super().addError(test, error)
        self.note(test, "error")

    def addSkip(self, test, reason):
        super().addSkip(test, reason)
        self.note(test, "skipped")


def write_xml(cases, path):
    count = {outcome: sum(case[2] == outcome for case in cases)
             for outcome in ("failure", "error", "skipped")}
    with open(path, "w", encoding="utf-8") as file:
        file.write(f'<testsuite name="browser" tests="{len(cases)}" failures="{count["failure"]}" '
                   f'errors="{count["error"]}" skipped="{count["skipped"]}">\n')
        for name, seconds, outcome in cases:
            file.write(f'  <testcase name={quoteattr(name)} time="{seconds:.3f}" '
                       f'outcome="{outcome}"/>\n')
        file.write("</testsuite>\n")


def run_tests(test_class, xml_path):
    suite = unittest.defaultTestLoader.loadTestsFromTestCase(test_class)
    result = unittest.TextTestRunner(sys.stdout, verbosity=2, resultclass=Result).run(suite)
    if xml_path:
        write_xml(result.cases, xml_path)
    for name, _, outcome in result.cases:
        if outcome in ("failure", "error"):
            print(f"{name}: FAILED")
    return 0 if result.wasSuccessful() else 1
