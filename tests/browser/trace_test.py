#!/usr/bin/env python3
"""The pages of plenxkit trace, opened in a real Chromium.

    trace_test.py --program PLENXKIT [--xml FILE]
"""

import argparse
import json
import shutil
import subprocess
import sys
import tempfile
import unittest
from datetime import datetime, timedelta
from pathlib import Path

from selenium import webdriver
from selenium.webdriver.common.action_chains import ActionChains
from selenium.webdriver.common.by import By
from selenium.webdriver.common.keys import Keys
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.support.ui import Select, WebDriverWait

from junit import run_tests

DEADLINE_SECONDS = 60  # of each wait; on a quick machine none takes a tenth of a second
LANES = ["Host", "Facade", "Worker", "Engine", "Services", "Observers"]
HOSTILE = "</script><script>window.hacked=1</script><img src=x onerror='window.hacked=1'><!--"

program = None


def stamp(milliseconds):
    noon = datetime(2026, 11, 21, 12)
    return (noon + timedelta(milliseconds=milliseconds)).strftime("%Y-%m-%d %H:%M:%S.%f")[:23]


def library(milliseconds, level, thread, text, function):
    return (f"{stamp(milliseconds)} [{level}] [{thread}] [PLENXSDK] {text}"
            f"(DistributedFs::{function})")


def start(at, service):
    """A start that goes well, as the library logs it."""
    return [
        library(at, "info", 36, f"plenx manager start service ({service}) is pushed into thread pool",
                "PLENXManager::Start"),
        library(at + 7, "info", 240, f"plenx manager start service svcType({service}) is invoked",
                "PLENXManager::StartFunc"),
        library(at + 8, "info", 240, f"rpc manager create group svcType:{service}",
                "RpcManager::CreateGroup"),
        library(at + 90, "info", 240, f"plenx manager notify status invoked svcType:{service} "
                "sttsType:0 value:1", "PLENXManager::NotifyStatus"),
        library(at + 91, "info", 240, "plenx manager notify status begin",
                "PLENXManager::NotifyStatus"),
        library(at + 95, "info", 240, "plenx manager notify status end",
                "PLENXManager::NotifyStatus"),
        library(at + 97, "info", 392, f"plenx manager notify connect invoked svcType:{service}",
                "PLENXManager::NotifyConnect"),
    ]


REFUSED = library(200, "error", 36, "plenx manager stop invalid parameter", "PLENXManager::Stop")
USUAL = library(201, "error", 240, "kill service process 0", "KillServiceProcess")
STORY = [*start(0, 1), REFUSED, USUAL, *start(300, 2)]
SERVICE_STORY = [f"{stamp(50)} pc received CreateGroup(0) groupName:\"g_1\" kind:2 groupArg:\"a\"",
                 f"{stamp(51)} pc answered CreateGroup(0) result:0 reply:0"]


class Pages(unittest.TestCase):
    """One browser for all tests; each opens a page of its own."""

    @classmethod
    def setUpClass(cls):
        cls.folder = Path(tempfile.mkdtemp(prefix="plenxkit-trace-"))
        options = webdriver.ChromeOptions()
        for argument in ("--headless=new", "--no-sandbox", "--disable-gpu", "--no-first-run",
                         "--disable-dev-shm-usage", "--disable-background-networking",
                         "--disable-component-update", "--disable-sync",
                         f"--user-data-dir={cls.folder / 'profile'}"):
            options.add_argument(argument)
        options.set_capability("goog:loggingPrefs", {"browser": "ALL", "performance": "ALL"})
        cls.browser = webdriver.Chrome(service=Service(shutil.which("chromedriver")),
                                       options=options)
        cls.browser.set_page_load_timeout(DEADLINE_SECONDS)

    @classmethod
    def tearDownClass(cls):
        cls.browser.quit()
        shutil.rmtree(cls.folder, ignore_errors=True)

    def setUp(self):
        self.resize(1280, 900)
        self.colours("light")

    # Steps

    def resize(self, width, height):
        self.browser.execute_cdp_cmd("Emulation.setDeviceMetricsOverride", {
            "width": width, "height": height, "deviceScaleFactor": 1, "mobile": False})

    def colours(self, scheme):
        self.browser.execute_cdp_cmd("Emulation.setEmulatedMedia", {
            "features": [{"name": "prefers-color-scheme", "value": scheme}]})

    def make(self, lines, *options, service=()):
        log = self.folder / "library.log"
        log.write_bytes(b"".join(line.encode("utf-8") + b"\n" for line in lines))
        arguments = [program, "trace", str(log), "--output", str(self.folder / "page.html"), *options]
        if service:
            service_log = self.folder / "service.log"
            service_log.write_text("".join(line + "\n" for line in service), encoding="utf-8")
            arguments += ["--service", str(service_log)]
        subprocess.run(arguments, check=True, stdout=subprocess.DEVNULL, timeout=600)

    def open(self, lines, *options, service=()):
        self.make(lines, *options, service=service)
        for kind in ("browser", "performance"):
            self.browser.get_log(kind)
        self.browser.get((self.folder / "page.html").as_uri())

    def script(self, text, *arguments):
        return self.browser.execute_script(text, *arguments)

    def text(self, css):
        return self.script("return document.querySelector(arguments[0]).textContent", css)

    def row(self, label):
        """Returns the first row whose label begins with this text, in the middle of the window."""
        row = self.script("""
            const row = [...document.querySelectorAll('.row')].find((row) =>
                row.querySelector('.label').textContent.startsWith(arguments[0]));
            if (row) { row.scrollIntoView({ block: 'center' }); }
            return row || null;""", label)
        self.assertIsNotNone(row, f"no row '{label}'")
        return row

    def labels(self):
        return self.script("""
            return [...document.querySelectorAll('.row')]
                .sort((one, other) => one.dataset.index - other.dataset.index)
                .map((row) => row.querySelector('.label').firstChild.textContent);""")

    def lane_at(self, x):
        """The name of the lane whose heading has its middle there."""
        middles = self.script("""
            return [...document.querySelectorAll('#lanes span')].map((head) => {
                const box = head.getBoundingClientRect();
                return [head.textContent, box.left + box.width / 2];
            });""")
        for name, middle in middles:
            if abs(middle - x) <= 3:
                return name
        return f"none at {x}"

    def path(self, label):
        """The lanes that the row's mark joins, from left to right, and where its head points."""
        box, classes = self.script("""
            const mark = arguments[0].querySelector('.arrow, .dot');
            const box = mark.getBoundingClientRect();
            return [[box.left, box.right], mark.className];""", self.row(label))
        if "dot" in classes:
            return self.lane_at(sum(box) / 2)
        lanes = [self.lane_at(x) for x in box]
        return " > ".join(lanes if "right" in classes else reversed(lanes))

    def wait(self, condition):
        return WebDriverWait(self.browser, DEADLINE_SECONDS, poll_frequency=0.05).until(
            lambda _: condition())

    def choose(self, css, value):
        Select(self.browser.find_element(By.CSS_SELECTOR, css)).select_by_value(value)

    def type_text(self, text):
        self.browser.find_element(By.ID, "text").send_keys(text)

    # Tests

    def test_a_page_opens_without_errors_and_without_a_network(self):
        self.open(STORY, service=SERVICE_STORY)
        self.assertEqual(self.browser.get_log("browser"), [])
        requests = [json.loads(entry["message"])["message"]
                    for entry in self.browser.get_log("performance")]
        addresses = [request["params"]["request"]["url"] for request in requests
                     if request["method"] == "Network.requestWillBeSent"]
        self.assertEqual([address for address in addresses if not address.startswith("data:")],
                         [(self.folder / "page.html").as_uri()])

    def test_the_policy_of_the_page_forbids_a_network(self):
        self.open(STORY)
        outcome = self.browser.execute_async_script("""
            const done = arguments[0];
            fetch('http://127.0.0.1:9/').then(() => done('fetched'), (error) => done(error.name));""")
        self.assertEqual(outcome, "TypeError")
        self.assertIn("Content Security Policy", str(self.browser.get_log("browser")))

    def test_events_stand_in_their_lanes_in_the_order_of_time(self):
        self.open(STORY, service=SERVICE_STORY)
        self.assertEqual(self.script("""
            return [...document.querySelectorAll('#lanes span')].map((head) => head.textContent);"""),
            LANES)
        self.assertEqual(self.labels(), [
            "Start pc", "Start pc runs", "pc: CreateGroup", "pc: CreateGroup(0) received",
            "pc: CreateGroup(0) done", "Start pc: done", "NotifyStatus", "all observers told",
            "NotifyConnect pc", "✕ Stop refused: 26", "nothing is left to end", "Start phone",
            "Start phone runs", "phone: CreateGroup", "Start phone: done", "NotifyStatus",
            "all observers told", "NotifyConnect phone"])
        self.assertEqual(self.path("Start pc"), "Host > Facade")
        self.assertEqual(self.path("Start pc runs"), "Facade > Worker")
        self.assertEqual(self.path("pc: CreateGroup"), "Engine > Services")
        self.assertEqual(self.path("pc: CreateGroup(0) received"), "Services")
        self.assertEqual(self.path("pc: CreateGroup(0) done"), "Services > Engine")
        self.assertEqual(self.path("Start pc: done"), "Engine > Facade")
        self.assertEqual(self.path("NotifyStatus"), "Facade > Observers")
        self.assertEqual(self.path("all observers told"), "Observers > Facade")
        self.assertEqual(self.path("NotifyConnect pc"), "Services > Facade")

    def test_lanes_are_right_in_a_narrow_window_too_and_nothing_is_wider_than_it(self):
        self.resize(360, 740)
        self.open(STORY, service=SERVICE_STORY)
        self.assertEqual(self.path("Start pc runs"), "Facade > Worker")
        self.assertEqual(self.path("pc: CreateGroup(0) received"), "Services")
        self.assertLessEqual(self.script("return document.documentElement.scrollWidth"), 360)

    def test_a_failure_is_marked_and_a_usual_error_is_not(self):
        self.open(STORY)
        self.assertIn("fail", self.row("✕ Stop refused").get_attribute("class").split())
        self.assertIn("failure", self.row("✕ Stop refused").get_attribute("aria-label"))
        usual = self.row("nothing is left to end").get_attribute("class").split()
        self.assertIn("usual", usual)
        self.assertNotIn("fail", usual)
        self.assertEqual(len(self.browser.find_elements(By.CSS_SELECTOR, ".row.fail")), 1)

    def test_pointing_at_an_event_shows_its_whole_line(self):
        self.open(STORY)
        ActionChains(self.browser).move_to_element(self.row("✕ Stop refused")).perform()
        self.wait(lambda: self.text("#line") == REFUSED)
        self.assertEqual(self.text("#facts"),
                         "error · library.log, line 8 · refused by the facade · thread 36")

    def test_the_keyboard_goes_through_events_and_failures(self):
        self.open(STORY)
        self.script("document.getElementById('events').focus()")
        self.wait(lambda: self.text("#line") == STORY[0])
        ActionChains(self.browser).send_keys(Keys.ARROW_DOWN, Keys.ARROW_DOWN).perform()
        self.wait(lambda: self.text("#line") == STORY[2])
        ActionChains(self.browser).send_keys("n").perform()
        self.wait(lambda: self.text("#line") == REFUSED)
        ActionChains(self.browser).send_keys(Keys.END).perform()
        self.wait(lambda: self.text("#line") == STORY[-1])
        chosen = self.script("""
            const events = document.getElementById('events');
            const row = document.getElementById(events.getAttribute('aria-activedescendant'));
            const box = row.getBoundingClientRect();
            const detail = document.getElementById('detail').getBoundingClientRect();
            return [row.getAttribute('aria-selected'), box.bottom <= detail.top + 1];""")
        self.assertEqual(chosen, ["true", True])
        ActionChains(self.browser).send_keys("/").perform()
        self.assertEqual(self.browser.switch_to.active_element.get_attribute("id"), "text")

    def test_filters_by_service_level_and_text(self):
        self.open(STORY, service=SERVICE_STORY)
        self.assertEqual(self.text("#count"), "18 of 18 events")
        self.choose("#service", "2")
        self.wait(lambda: self.text("#count") == "7 of 18 events")
        self.choose("#service", "")
        self.choose("#level", "error")
        self.wait(lambda: self.text("#count") == "2 of 18 events")
        self.choose("#level", "alarm")
        self.wait(lambda: self.labels() == ["✕ Stop refused: 26"])
        self.browser.find_element(By.ID, "clear").click()
        self.wait(lambda: self.text("#count") == "18 of 18 events")
        self.type_text("GROUPNAME")
        self.wait(lambda: self.labels() == ["pc: CreateGroup(0) received"])
        self.type_text(" of nobody")
        self.wait(lambda: self.text("#count") == "0 of 18 events")
        self.assertTrue(self.browser.find_element(By.ID, "nothing").is_displayed())

    def test_the_summary_counts_and_leads_to_the_event(self):
        self.open(STORY, service=SERVICE_STORY)
        tiles = self.script("""
            return [...document.querySelectorAll('.tile')].map((tile) =>
                [tile.lastChild.textContent, tile.firstChild.textContent]);""")
        self.assertEqual(dict(tiles), {
            "calls": "3", "failed calls": "0", "refused calls": "1", "failure lines": "1",
            "requests to services": "2", "notifications": "2"})
        cards = self.script("""
            return [...document.querySelectorAll('.card')].map((card) => [
                card.querySelector('summary').firstChild.textContent.trim(),
                [...card.querySelectorAll('tbody tr')].map((row) =>
                    [...row.cells].map((cell) => cell.textContent).join(' | '))]);""")
        self.assertEqual(dict(cards), {
            "Failed and refused calls": ["1 | Stop | 26 | an empty text where one is needed"],
            "Slowest starts": ["83 | Start pc: done | 12:00:00.090",
                               "83 | Start phone: done | 12:00:00.390"],
            "Longest waits": ["7 | Start pc runs | 12:00:00.007",
                              "7 | Start phone runs | 12:00:00.307"],
            "Calls": ["Start | 2 |  |  | 7.0 | 7", "Stop | 1 |  | 1 | – | –"],
            "Error lines": ["1 | plenx manager stop invalid parameter (PLENXManager::Stop)",
                            "1 | ○ kill service process 0 (KillServiceProcess)"]})
        self.type_text("something that hides all")
        self.browser.find_element(By.CSS_SELECTOR, ".card .link").click()
        self.wait(lambda: self.text("#line") == REFUSED)

    def test_dark_and_light_have_colours_that_can_be_read(self):
        self.open(STORY)
        backgrounds = set()
        for scheme in ("light", "dark"):
            self.colours(scheme)
            backgrounds.add(self.script("return getComputedStyle(document.documentElement).backgroundColor"))
            self.assertEqual(self.script(CONTRAST), [], scheme)
        self.assertEqual(len(backgrounds), 2)

    def test_text_of_a_log_stays_text(self):
        line = library(0, "info", 1, f"rpc manager set string config svcType:1 cfgType:1 "
                       f"cfgValue:{HOSTILE}", "RpcManager::SetStringConfig")
        self.open([HOSTILE, line], "--title", HOSTILE)
        first, second = self.labels()
        self.assertTrue(first.startswith(HOSTILE[:60]), first)
        self.assertTrue(second.startswith(f"pc: SetStringConfig 1 = {HOSTILE[:60]}"), second)
        ActionChains(self.browser).move_to_element(self.row("pc: SetStringConfig")).perform()
        self.wait(lambda: self.text("#line") == line)
        self.assertEqual(self.browser.title, HOSTILE)
        self.assertEqual(self.text("#title"), HOSTILE)
        self.assertEqual(self.script("return [typeof window.hacked, document.scripts.length, "
                                     "document.images.length]"), ["undefined", 2, 0])
        self.assertEqual(self.browser.get_log("browser"), [])

    def test_a_page_of_a_large_log_has_few_rows_at_a_time_and_can_be_filtered(self):
        lines = []
        size = 0
        while size < 20_000_000:
            lines += start(len(lines) * 20, len(lines) % 3)
            size += sum(map(len, lines[-7:]))
        lines[len(lines) // 2] = REFUSED
        self.open(lines)
        self.assertLess((self.folder / "page.html").stat().st_size, 10_000_000)
        self.assertIn("The logs are too large to be shown whole", self.text("#notices"))
        self.assertIn(f"{len(lines):,} lines".replace(",", "\u202f"), self.text("#origin"))
        rows = "return document.querySelectorAll('.row').length"
        self.assertLess(self.script(rows), 100)
        self.type_text("invalid parameter")
        self.wait(lambda: self.labels() == ["✕ Stop refused: 26"])
        self.browser.find_element(By.ID, "clear").click()
        self.wait(lambda: len(self.labels()) > 1)
        self.script("window.scrollTo(0, document.body.scrollHeight)")
        self.wait(lambda: self.script("""
            const rows = [...document.querySelectorAll('.row')];
            return rows.some((row) => Number(row.dataset.index) + 1 === Number(row.ariaSetSize));"""))
        self.assertLess(self.script(rows), 100)
        self.assertEqual(self.browser.get_log("browser"), [])

    def test_an_empty_log_has_a_page(self):
        self.open([])
        self.assertTrue(self.browser.find_element(By.ID, "nothing").is_displayed())
        self.assertEqual(self.browser.get_log("browser"), [])


# The colours of text whose contrast to what is behind them is less than 4.5.
CONTRAST = """
    const style = getComputedStyle(document.documentElement);
    const luminance = (name) => {
        const hex = style.getPropertyValue(name).trim().slice(1);
        const [red, green, blue] = [0, 2, 4].map((at) => {
            const part = parseInt(hex.slice(at, at + 2), 16) / 255;
            return part <= 0.03928 ? part / 12.92 : ((part + 0.055) / 1.055) ** 2.4;
        });
        return 0.2126 * red + 0.7152 * green + 0.0722 * blue;
    };
    const contrast = (one, other) => {
        const [less, more] = [luminance(one), luminance(other)].sort((a, b) => a - b);
        return (more + 0.05) / (less + 0.05);
    };
    const backs = ['--page', '--panel', '--hover', '--chosen'];
    const kinds = ['--ink', '--muted', '--call', '--job', '--step', '--request', '--outcome',
        '--notification', '--fail'];
    const pairs = kinds.flatMap((kind) => backs.map((back) => [kind, back]));
    pairs.push(['--fail', '--fail-back'], ['--muted', '--fail-back']);
    return pairs.map(([one, other]) => [one, other, contrast(one, other)])
        .filter(([, , value]) => !(value >= 4.5));
"""


if __name__ == "__main__":
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--program", required=True, help="plenxkit")
    parser.add_argument("--xml", help="write the results here, as JUnit does")
    options = parser.parse_args()
    program = options.program
    sys.exit(run_tests(Pages, options.xml))
