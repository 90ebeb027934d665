"""What people do with the viewer, in a real browser."""

import os
import re
import subprocess
import tempfile
import time
import unittest

from selenium.webdriver.common.action_chains import ActionChains
from selenium.webdriver.common.by import By
from selenium.webdriver.common.keys import Keys

from browser import Browser
from harness import ARGUMENTS, LIMIT, Socket, Viewer, command, complain_of, native_path, read_png, run_tests, wait_for

NOISE = 16  # grey values by which two images of one scene differ
BOARD, SINGLE, DUAL = "1a2b3c", "SingleAreaGray.hap", "DualAreaCxp.hap"


def scene_picture(applet=SINGLE, board=0):
    """The picture that the console saves of the same scene: (width, height, rows)."""
    with tempfile.TemporaryDirectory() as folder:
        script = os.path.join(folder, "script")
        with open(script, "w", encoding="utf-8") as file:
            file.write(f"load {board} {applet}\nstart {board} dma 0\nwait 2 images {board} 0\n"
                       f"save-image {board} 0 picture.png\n")
        ended = subprocess.run(command(ARGUMENTS.console, "--script", native_path(script), "--output-dir", native_path(folder)),
                               stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=LIMIT, check=False)
        assert ended.returncode == 0, ended.stdout
        return read_png(os.path.join(folder, "picture.png"))


class Story(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.browser = Browser()

    @classmethod
    def tearDownClass(cls):
        cls.browser.end()

    def setUp(self):
        self.viewer = Viewer()
        self.browser.open(self.viewer)
        self.browser.errors()  # those of the page before, whose program has ended

    def tearDown(self):
        self.browser.keep_picture("after-" + self.id().rsplit(".", 1)[1])
        for side, messages in self.browser.traffic().items():
            self.assertEqual(list(filter(None, (complain_of(each, side) for each in messages.values()))), [])
        self.assertEqual(self.viewer.end(), 0, self.viewer.lines)

    def load(self, applet=SINGLE, board=0):
        self.browser.press(f"Load {applet} onto board {board}")
        self.browser.find(f"[data-channel='{board}/0']")

    def start(self, channel="0/0"):
        board, dma = channel.split("/")
        self.browser.press(f"Start board {board} DMA {dma}", ".tile")

    def acquire(self, applet=SINGLE, board=0):
        self.load(applet, board)
        self.start(f"{board}/0")
        self.browser.wait_for_images(f"{board}/0")

    def stop(self, channel="0/0"):
        board, dma = channel.split("/")
        self.browser.press(f"Stop board {board} DMA {dma}", ".tile")
        wait_for(lambda: self.text_of(".why").startswith("Stopped"), "the tile says that it is stopped")

    def open_panel(self, title):
        if self.browser.run("return ovraViewer.panel?.title") != title:
            self.browser.press(title, "#panels")
        wait_for(lambda: self.text_of("#panel h2") == title, f"the panel {title}")

    def channel(self, board=0, process=0):
        return self.state("boards")[board]["processes"][process]["channels"][0]

    def files(self, ending):
        return sorted(each for each in os.listdir(self.viewer.folder) if each.endswith(ending))

    def state(self, section):
        return self.browser.run("return ovraViewer.state.get(arguments[0])", section)

    def tile(self, expression):
        """A value of the first tile."""
        return self.browser.run(f"const [tile] = ovraViewer.tiles.tiles.values(); return {expression};")

    def screen_points(self, points):
        """Where image points lie on the canvas of the first tile."""
        return self.browser.run(
            """const [tile] = ovraViewer.tiles.tiles.values();
            return arguments[0].map(([x, y]) => tile.geometry.toScreen({x: x + 0.5, y: y + 0.5}));""", points)

    def text_of(self, selector):
        return self.browser.run("return document.querySelector(arguments[0])?.textContent ?? ''", selector)

    def show_all_pixels(self):
        """One to one, where none are blended."""
        self.browser.send(".tile .stage", "1")
        wait_for(lambda: self.tile("tile.image?.view === tile.view && tile.image.binning === 1 && !tile.drawing"), "all pixels")

    def point_at(self, pixel):
        """Moves the mouse over a pixel of the first tile's image; what the page says of it."""
        stage = self.browser.find(".tile .stage")
        place = self.screen_points([pixel])[0]
        size = stage.size
        ActionChains(self.browser.driver, duration=0).move_to_element(stage).move_to_element_with_offset(
            stage, int(place["x"] - size["width"] / 2), int(place["y"] - size["height"] / 2)).perform()
        wait_for(lambda: self.tile("tile.pixel"), "the pointer is over the image")
        expected = [int(number) for number in self.tile("tile.pixel")]
        start = f"x {expected[0]}, y {expected[1]}: "
        text = wait_for(lambda: self.text_of(".position").startswith(start) and self.text_of(".position"), "the value there")
        return [int(number) for number in re.findall(r"\d+", text)]


    def keep(self):
        """Saves the image of the only tile: (width, height, rows) of the file."""
        before = self.files(".png")
        self.browser.send(".tile .stage", "s")
        saved = wait_for(lambda: [each for each in self.files(".png") if each not in before], "the file")[0]
        return read_png(os.path.join(self.viewer.folder, saved))


class Images(Story):
    def test_an_applet_is_loaded_and_its_scene_moves_on_the_canvas(self):
        width, height, rows = scene_picture()
        self.acquire()
        self.browser.press("Enlarge")
        self.browser.press("1:1")
        points = [(x, y) for y in range(200, height - 200, 23) for x in range(200, width - 200, 23)]
        self.browser.wait_for_images("0/0")
        across, down, data = self.browser.pixels("0/0")

        def share_of_matches(shift):
            places = zip(points, self.screen_points(points))
            seen = [abs(data[4 * (int(place["y"]) * across + int(place["x"]))] - rows[y + shift][x]) <= NOISE
                    for (x, y), place in places if 0 <= int(place["x"]) < across and 0 <= int(place["y"]) < down]
            self.assertGreater(len(seen), 200)
            return sum(seen) / len(seen)
        # Clouds and sails are elsewhere in another image; everything is elsewhere in a wrong one.
        self.assertGreater(share_of_matches(0), 0.85)
        self.assertLess(share_of_matches(100), 0.7)
        self.assertEqual(self.browser.errors(), [])

    def test_the_value_under_the_pointer_is_that_of_the_pixel_at_every_zoom(self):
        self.acquire()
        self.stop()
        width, height, rows = self.keep()
        pixels = [(x, y) for y in range(8, height, 16) for x in range(8, width, 16)]
        for key in ("", "1", "+", "r", "f"):
            if key:
                self.browser.send(".tile .stage", key)
            size = self.browser.find(".tile .stage").size
            seen = [pixel for pixel, place in zip(pixels, self.screen_points(pixels))
                    if 2 < place["x"] < size["width"] - 2 and 2 < place["y"] < size["height"] - 2]
            self.assertGreater(len(seen), 20, key)
            for choose in (min, max):
                pixel = choose(seen, key=lambda each: rows[each[1]][each[0]])
                x, y, value = self.point_at(pixel)
                self.assertLessEqual(max(abs(x - pixel[0]), abs(y - pixel[1])), 3, key)
                self.assertEqual(value, rows[y][x], f"after {key!r} at {x}, {y}")

    def test_two_fingers_zoom_to_what_is_between_them(self):
        self.acquire()
        self.stop()
        box = self.browser.find(".tile .stage").rect
        middle = (box["x"] + box["width"] / 2 + 40, box["y"] + box["height"] / 2)
        under = "tile.geometry.toImage({x: tile.geometry.stage.width / 2 + 40, y: tile.geometry.stage.height / 2})"
        scale, before = self.tile("tile.geometry.scale"), self.tile(under)

        def fingers(distance):
            return [(middle[0] - distance, middle[1]), (middle[0] + distance, middle[1])]
        self.browser.touch("touchStart", *fingers(20))
        for distance in range(30, 110, 10):
            self.browser.touch("touchMove", *fingers(distance))
        self.browser.touch("touchEnd")
        grown = wait_for(lambda: self.tile("tile.geometry.scale") != scale and self.tile("tile.geometry.scale"), "zoomed")
        self.assertAlmostEqual(grown, max(1, round(scale * 5)), delta=1)
        after = self.tile(under)
        self.assertLessEqual(max(abs(before[axis] - after[axis]) for axis in "xy"), 8)

    def test_contrast_stretches_what_lies_between_the_handles(self):
        self.acquire()
        self.stop()
        self.show_all_pixels()
        before = self.browser.pixels("0/0")[2][0::4]
        low = self.browser.find("[data-end='low']")
        low.send_keys(Keys.PAGE_UP * 10)  # a hundred steps
        self.assertEqual(low.get_attribute("aria-valuenow"), "100")
        after = self.browser.pixels("0/0")[2][0::4]
        alpha = self.browser.pixels("0/0")[2][3::4]
        for old, new, opaque in list(zip(before, after, alpha))[::37]:
            if opaque:
                self.assertLessEqual(abs(new - max(0, (old - 100) * 255 / 155)), 4)

    def test_a_plain_canvas_shows_the_same(self):
        self.acquire()
        self.stop()
        self.assertEqual(self.tile("tile.root.dataset.renderer"), "webgl2")
        self.show_all_pixels()
        drawn = self.browser.pixels("0/0")
        self.browser.open(self.viewer, "&renderer=canvas")
        wait_for(lambda: self.browser.shown_image("0/0"), "the last image")
        self.assertEqual(self.tile("tile.root.dataset.renderer"), "canvas")
        self.show_all_pixels()
        plain = self.browser.pixels("0/0")
        self.assertEqual(drawn[:2], plain[:2])
        differences = [abs(a - b) for a, b in zip(drawn[2], plain[2])]
        self.assertLessEqual(sum(difference > 1 for difference in differences), len(differences) // 100)


class Keeping(Story):
    def test_images_of_any_depth_are_saved_as_they_came_and_their_values_are_seen(self):
        for applet, board, components, shift in (("SingleAreaGray12Cxp.hap", 1, 1, 4), ("SingleAreaColor.hap", 0, 3, 0)):
            with self.subTest(applet=applet):
                self.acquire(applet, board)
                self.stop(f"{board}/0")
                for key in "ac":  # what is only seen changes nothing
                    self.browser.send(".tile .stage", key)
                width, height, rows = self.keep()
                for pixel in ((width // 2 + 9, height // 2), (width // 3, height // 3), (width // 5, height // 2)):
                    x, y, *values = self.point_at(pixel)
                    kept = [each >> shift for each in rows[y][x * components:(x + 1) * components]]
                    self.assertEqual(values, kept, f"at {x}, {y}")
                self.assertGreater(max(max(row) for row in rows[::50]) >> shift, 255 if shift else 100)
                self.browser.press("Save as shown")
                shown = read_png(self.browser.downloaded("-as-shown.png"))
                self.assertEqual(list(shown[:2]), self.browser.pixels(f"{board}/0")[:2])
                os.remove(self.browser.downloaded("-as-shown.png"))
                self.browser.press("Copy")
                wait_for(lambda: "is in the clipboard" in self.text_of("#toasts"), "copied")
                self.assertEqual(self.browser.size_of_copied_picture(), list(shown[:2]))
                self.browser.request("unload", board=self.state("boards")[board]["serial"])
                wait_for(lambda: not self.browser.driver.find_elements(By.CSS_SELECTOR, ".tile"), "no tile")

    def test_a_line_is_dragged_and_its_values_are_those_of_the_pixels(self):
        self.acquire()
        self.stop()
        _, _, rows = self.keep()
        self.browser.press("Profile")
        stage, size = self.browser.find(".tile .stage"), self.browser.find(".tile .stage").size
        ends = [(place["x"] - size["width"] / 2, place["y"] - size["height"] / 2) for place in self.screen_points([(300, 300), (700, 500)])]
        ActionChains(self.browser.driver, duration=0).move_to_element_with_offset(stage, *map(int, ends[0])).click_and_hold() \
            .move_by_offset(*(int(b) - int(a) for a, b in zip(*ends))).release().perform()
        x, y, x2, y2 = wait_for(lambda: self.tile("tile.samples?.ends.join() === tile.line?.join() && tile.line"), "the values along the line")
        samples = [each[0] for each in self.tile("tile.samples.line")]
        self.assertEqual(len(samples), max(abs(x2 - x), abs(y2 - y)) + 1)
        shares = [i / (len(samples) - 1) for i in range(len(samples))]
        self.assertEqual(samples, [rows[int(y + share * (y2 - y) + 0.5)][int(x + share * (x2 - x) + 0.5)] for share in shares])
        self.browser.send(".tile .stage", "p")  # takes it away
        wait_for(lambda: not self.tile("tile.line"), "no line")
        self.browser.send(".tile .stage", "p", Keys.SHIFT, Keys.ARROW_DOWN, Keys.NULL)
        x, y, x2, y2 = wait_for(lambda: self.tile("tile.line"), "a line across the image")
        self.assertEqual((x, x2), (0, 1023))
        self.assertGreater(y2, y)

    def test_images_are_recorded_and_a_recording_is_cancelled(self):
        self.load()
        # A busy machine loses images of a faster camera.
        self.browser.request("set-parameter", board=BOARD, port=0, name="FrameRate", value="4")
        self.open_panel("Acquisition")
        self.browser.fill("#count", "5")
        self.browser.press("Record images of board 0 DMA 0")  # starts it, too
        first = wait_for(lambda: [each for each in self.state("recordings") if each["ended"]], "recorded")[0]
        self.assertEqual((first["recorded"], first["missed"], first["failure"]), (5, 0, ""))
        folder = os.path.join(self.viewer.folder, first["name"])
        self.assertEqual(sorted(os.listdir(folder)), [f"image-{i:06}.png" for i in range(1, 6)] + ["images.csv"])
        self.assertEqual(read_png(os.path.join(folder, "image-000005.png"))[:2], (1024, 768))
        self.start()
        self.browser.fill("#count", "100000")
        self.browser.press("Record images of board 0 DMA 0")
        wait_for(lambda: len(self.state("recordings")) == 2 and self.state("recordings")[1]["recorded"] > 2, "progress")
        with self.assertRaisesRegex(RuntimeError, "recorded already"):
            self.browser.request("record", board=BOARD, dma=0, images=5)
        self.assertIn("recorded already", self.state("notices")[-1]["text"])
        self.browser.press(f"Cancel {self.state('recordings')[1]['name']}")
        second = wait_for(lambda: self.state("recordings")[1]["ended"] and self.state("recordings")[1], "cancelled")
        self.assertTrue(second["cancelled"])
        written = len(os.listdir(os.path.join(self.viewer.folder, second["name"]))) - 1
        self.assertGreaterEqual(written, second["recorded"])
        self.assertTrue(self.channel()["grabbing"], "the acquisition goes on")


class Rehearsals(Story):
    def test_hardware_comes_and_goes_and_the_page_says_so(self):
        self.load()
        # A busy machine may need longer than the ten seconds after which a channel without images stops.
        self.browser.request("set-parameter", board=BOARD, dma=0, name="FG_TIMEOUT", value="600")
        self.start()
        self.browser.wait_for_images("0/0")
        self.open_panel("Rehearsal")

        def rehearse(part, step):
            self.browser.choose("#panel [aria-label='Part']", part)
            self.browser.press(step, "#panel")
        rehearse("camera at connector 0 of board 0", "Unplug")
        wait_for(lambda: self.text_of(".why"), "the tile says that nothing comes")
        self.browser.click("[aria-label='Undo unplug camera 0 0']")
        wait_for(lambda: not self.state("rehearsal")["plans"], "plugged in")
        self.stop()
        self.open_panel("Machine")
        self.browser.press("Start process 0 of board 0")
        self.browser.wait_for_images("0/0")
        self.open_panel("Rehearsal")
        rehearse("board 0", "Unplug")
        wait_for(lambda: self.text_of(".why").startswith("Device lost"), "the tile says that the board is lost")
        wait_for(lambda: any(each["title"] == "Acquisition" and "board 0 DMA 0" in each["text"] for each in self.state("notices")),
                 "a notice that stays")
        rehearse("board 0", "Plug in")
        wait_for(lambda: not self.state("rehearsal")["plans"], "plugged in")
        self.open_panel("Machine")
        self.browser.press("Unload")
        self.acquire()

    def test_faults_and_scenarios_are_planned_and_taken_back(self):
        self.open_panel("Rehearsal")
        self.browser.fill("#rehearsed-entry", "Fg_InitEx")
        self.browser.press("Make it fail", "#panel")
        wait_for(lambda: any(plan.startswith("fault Fg_InitEx") for plan in self.state("rehearsal")["plans"]), "planned")
        self.browser.click("[aria-label^='Undo fault Fg_InitEx']")
        wait_for(lambda: not self.state("rehearsal")["plans"], "forgotten")
        self.browser.choose("[aria-label='Scenario']", "loose-cable")
        self.browser.press("Play", "#panel")
        wait_for(lambda: self.state("rehearsal")["scenario"] == ["waits: at image 50 of board 0 DMA 0: loosen 0 0 5 lost"], "begun")
        path = os.path.join(self.viewer.folder, "own.scenario")
        with open(path, "w", encoding="utf-8") as file:
            file.write("at 0 s: disk full\n")
        self.browser.send("#scenario-file", path)
        wait_for(lambda: self.state("rehearsal")["plans"] == ["disk full"], "the file is played")
        for request, arguments in (("rehearse", {"step": "scenario /etc/passwd"}), ("play-scenario", {"name": "../../own"})):
            with self.assertRaisesRegex(RuntimeError, "there is no such|there is no step"):
                self.browser.request(request, **arguments)
        self.open_panel("Notices")
        self.browser.press("Download a problem report")
        with open(self.browser.downloaded(".txt"), encoding="utf-8") as file:
            report = file.read()
        self.assertIn("ovra-viewer ", report)
        self.assertNotIn(self.viewer.folder, report)
        self.assertRegex(report, r"(?s)== log.*\n\d{4}-\d\d-\d\dT[\d:.]+Z information: ")


class Questions(Story):
    def test_each_answer_does_what_its_button_says(self):
        sizes = {2: (1023, 1024), 0: (1024, 1024), 1: (1023, 1023)}  # of channel and camera; the camera keeps its own
        for button, expected in sizes.items():
            with self.subTest(button=button):
                self.load(DUAL, 1)
                self.browser.request("set-sync-mode", mode=2)
                self.start("1/0")
                self.browser.find("dialog[open] #remember")
                ActionChains(self.browser.driver).send_keys(Keys.ESCAPE).perform()  # is no answer
                self.browser.click(f"dialog[open] [data-button='{button}']")
                self.browser.wait_for_images("1/1")
                process = next(each for each in self.state("boards")[1]["processes"]
                               for channel in each["channels"] if channel["index"] == 1)
                widths = (process["channels"][0]["width"], process["ports"][0]["camera"]["width"])
                self.assertEqual(widths, expected)
                self.browser.press("Stop board 1 DMA 0", ".tile")  # a camera that sends keeps its size
                wait_for(lambda: not self.state("boards")[1]["processes"][1]["channels"][0]["grabbing"], "stopped")
                self.browser.press("Unload")
                wait_for(lambda: not self.state("boards")[1]["applet"], "unloaded")

    def test_a_remembered_answer_is_used_and_can_be_taken_back(self):
        self.load(DUAL, 1)
        self.browser.request("set-sync-mode", mode=2)
        self.start("1/0")
        self.browser.click("#remember")
        self.browser.click("dialog[open] [data-button='2']")
        wait_for(lambda: self.state("settings")["remembered"] == 2, "remembered")
        self.browser.press("Stop board 1 DMA 0", ".tile")
        self.start("1/0")
        wait_for(lambda: self.state("boards")[1]["processes"][0]["channels"][0]["grabbing"], "started without a question")
        self.assertIsNone(self.state("question"))
        self.browser.request("forget-answer")
        wait_for(lambda: self.state("settings")["remembered"] is None, "taken back")

    def test_without_a_page_the_answer_is_ignore_and_is_logged(self):
        self.load(DUAL, 1)
        self.browser.request("set-sync-mode", mode=2)
        with Socket(self.viewer) as page:
            page.hello()
            self.browser.driver.get("about:blank")
            page.send({"type": "request", "id": 1, "name": "start",
                       "arguments": {"board": "c0ffee01", "kind": "dma", "index": 0}})
        wait_for(lambda: any("Nobody was there to answer" in line for line in self.viewer.lines), "the program goes on")
        self.browser.open(self.viewer)
        self.browser.wait_for_images("1/1")
        wait_for(lambda: any(line["text"].startswith("Nobody was there to answer") for line in self.state("log")), "logged")


class Pages(Story):
    def test_two_pages_and_a_reload_show_the_same_state(self):
        self.load(DUAL, 1)
        self.load()
        self.assertEqual(self.browser.run("return [...document.querySelectorAll('.tile')].map((each) => each.dataset.channel)"),
                         ["0/0", "1/0", "1/1"])
        first = self.state("boards")
        self.browser.driver.refresh()
        wait_for(lambda: self.browser.run("return document.body.dataset.ready === 'true'"), "ready again")
        self.assertEqual(self.state("boards"), first)
        with Socket(self.viewer) as other:
            self.assertEqual(other.hello()["state"]["boards"], first)
            other.request("unload", board=BOARD)
        wait_for(lambda: not self.state("boards")[0]["applet"], "the page sees what another one did")

    def test_a_second_browser_sees_and_answers_what_the_first_does(self):
        second = Browser()
        try:
            second.open(self.viewer)
            self.load(DUAL, 1)
            second.find("[data-channel='1/1']")
            self.browser.request("set-sync-mode", mode=2)
            self.start("1/0")
            self.browser.find("dialog[open] [data-button='2']")
            second.click("dialog[open] [data-button='2']")
            wait_for(lambda: not self.browser.driver.find_elements(By.CSS_SELECTOR, "dialog[open]"), "closed in both")
            for browser in (self.browser, second):
                browser.wait_for_images("1/0")
            wait_for(lambda: {each["board"] for each in self.state("events")} == {1}, "events of the board that acquires")
            self.browser.press("Enlarge", "[data-channel='1/1']")

            def rests():
                before = self.browser.shown_image("1/0")
                self.browser.wait_for_images("1/1", 4)
                return self.browser.shown_image("1/0") == before

            wait_for(rests, "images of the hidden tile are not sent")
            self.browser.press("Enlarge", "[data-channel='1/1']")
            self.browser.wait_for_images("1/0")
            second.press("Stop board 1 DMA 0", ".tile")
            wait_for(lambda: not self.channel(1)["grabbing"], "stopped in both")
        finally:
            second.end()

    def test_a_program_that_comes_back_is_found_again(self):
        old = self.viewer
        old.kill()
        wait_for(lambda: self.browser.run("return document.body.dataset.connection === 'away'"), "the page says so")
        self.viewer = Viewer(port=old.port)
        self.assertEqual(self.viewer.port, old.port)
        wait_for(lambda: self.browser.run("return document.body.dataset.connection === 'refused'"), "the old token is refused")
        first = self.browser.driver.current_window_handle
        self.browser.driver.switch_to.new_window("tab")
        self.browser.open(self.viewer)  # as the program itself opens it
        wait_for(lambda: self.refusals(), "the refusal is logged")
        self.assertEqual(self.refusals(), 1)
        self.browser.driver.close()
        self.browser.driver.switch_to.window(first)

        def is_open():
            return self.browser.run("return document.body.dataset.connection === 'open'")
        wait_for(is_open, "let in again")
        self.browser.driver.refresh()
        wait_for(is_open, "let in after a reload")

    def test_quit_asks_while_images_come(self):
        self.acquire()
        self.browser.click("#quit")
        self.browser.press("Cancel", "dialog[open]")
        self.browser.wait_for_images("0/0")
        self.browser.click("#quit")
        self.browser.press("Quit", "dialog[open]")
        self.assertEqual(self.viewer.process.wait(LIMIT), 0, self.viewer.lines)

    def refusals(self):
        return sum("wrong token" in line["text"] for line in self.state("log"))

    def test_everything_is_done_with_the_keyboard_alone(self):
        driver = self.browser.driver
        driver.find_element(By.TAG_NAME, "body").click()

        def go_to(label, limit=60):
            for _ in range(limit):
                driver.switch_to.active_element.send_keys(Keys.TAB)
                active = driver.switch_to.active_element
                if (active.get_attribute("aria-label") or active.text) == label:
                    outline = self.browser.run("return getComputedStyle(document.activeElement).outlineStyle")
                    self.assertNotEqual(outline, "none", f"focus on {label} is visible")
                    return active
            raise AssertionError(f"no way to {label} with the tabulator")

        go_to(f"Load {SINGLE} onto board 0").send_keys(Keys.ENTER)
        self.browser.find("[data-channel='0/0']")
        wait_for(lambda: not self.state("load")["active"], "loaded")
        driver.find_element(By.TAG_NAME, "body").click()
        go_to("Start board 0 DMA 0").send_keys(Keys.SPACE)
        self.browser.wait_for_images("0/0")

class Settings(Story):
    def test_a_parameter_is_set_and_a_value_that_is_refused_stays_with_the_reason(self):
        self.load()
        self.browser.press("Parameters")
        self.browser.fill("#parameter-GAIN", "99", Keys.ENTER)
        reason = wait_for(lambda: self.text_of("#parameter-GAIN-about.error"), "the reason")
        self.assertIn("GAIN", reason)
        self.assertIn("16", reason)
        self.assertEqual(self.browser.run("return document.querySelector('#parameter-GAIN').value"), "99")
        self.browser.fill("#parameter-GAIN", "2.5", Keys.ENTER)
        wait_for(lambda: not self.text_of("#parameter-GAIN-about.error"), "accepted")
        values = {each["name"]: each["value"] for each in self.browser.request("list-parameters", board=BOARD, dma=0)}
        self.assertEqual(values["GAIN"], "2.5")
        with Socket(self.viewer) as other:
            other.hello()
            other.request("set-parameter", board=BOARD, dma=0, name="GAIN", value="1.5")
        wait_for(lambda: self.browser.run("return document.querySelector('#parameter-GAIN').value") == "1.5", "what another page set")
        self.browser.fill("#parameter-FG_WIDTH", "512", Keys.ENTER)
        wait_for(lambda: self.state("boards")[0]["processes"][0]["channels"][0]["width"] == 512, "the channel's size")

    def test_a_camera_waits_for_a_trigger_which_a_button_sends(self):
        self.load("TriggeredAreaCxp.hap", 1)
        self.open_panel("Parameters")
        self.browser.choose("#parameter-TRIGGER_MODE", "software")
        wait_for(lambda: any(each["name"] == "TRIGGER_MODE" and each["value"] == "1" for each in
                             self.browser.request("list-parameters", board="c0ffee01", dma=0)), "set")
        self.browser.request("start", board="c0ffee01", kind="process", index=0)
        wait_for(lambda: self.text_of(".why").startswith("Waiting for a trigger"), "the tile says so")
        for count in (1, 2):
            self.browser.press("Trigger port 0")
            wait_for(lambda count=count: self.browser.shown_image("1/0") == count, f"image {count}")
        self.browser.choose("[aria-label='Parameters of']", self.browser.run(
            "return [...document.querySelectorAll('[aria-label=\"Parameters of\"] option')].map((each) => each.textContent).find((each) => each.startsWith('camera'))"))
        self.browser.fill("#parameter-ExposureTime", "1234", Keys.ENTER)
        wait_for(lambda: any(each["name"] == "ExposureTime" and float(each["value"]) == 1234 for each in
                             self.browser.request("list-parameters", board="c0ffee01", port=0)), "the camera's exposure")

    def test_the_generator_makes_the_images_that_it_should(self):
        self.load()
        self.browser.request("set-parameter", board=BOARD, dma=0, name="FG_GEN_ENABLE", value="1")
        wait_for(lambda: self.state("boards")[0]["processes"][0]["ports"][0]["generator"], "the camera rests")
        self.start()
        self.browser.wait_for_images("0/0")
        self.browser.press("Stop board 0 DMA 0", ".tile")
        self.show_all_pixels()
        # The ramp rises by one from pixel to pixel.
        first = self.point_at((512, 384))
        second = self.point_at((514, 384))
        self.assertEqual((second[2] - first[2]) % 256, (second[0] - first[0]) % 256)

    def test_a_configuration_goes_down_and_comes_up_again(self):
        self.load()
        self.browser.request("set-parameter", board=BOARD, dma=0, name="GAIN", value="3.5")
        self.browser.press("Configurations")
        self.browser.press("Store the board's configuration")
        stored = wait_for(lambda: [each for each in os.listdir(self.viewer.folder) if each.endswith(".mcf")], "a file")
        self.browser.find(f"[aria-label='Download {stored[0]}']")
        text = self.browser.request("read-configuration", name=stored[0], origin="stored")["text"]
        self.assertIn("GAIN", text)
        path = os.path.join(self.viewer.folder, "changed.mcf")
        with open(path, "w", encoding="utf-8") as file:
            file.write(text.replace("3.5", "4.5"))
        self.browser.request("unload", board=BOARD)
        large = os.path.join(self.viewer.folder, "large.mcf")
        with open(large, "w", encoding="utf-8") as file:
            file.write(";" * (5 << 20))
        self.browser.send("#upload", large)
        wait_for(lambda: "large.mcf has 5242880 bytes" in self.text_of("#toasts"), "refused")
        self.browser.send("#upload", path)
        wait_for(lambda: self.state("boards")[0]["applet"] == SINGLE and not self.state("load")["active"], "loaded")

        def gain():
            values = self.browser.request("list-parameters", board=BOARD, dma=0)
            return next(each["value"] for each in values if each["name"] == "GAIN")
        wait_for(lambda: gain() == "4.5", "the value of the file")
        with self.assertRaisesRegex(RuntimeError, "no such configuration"):
            self.browser.request("load-configuration", board=BOARD, name="../../etc/passwd", origin="stored")


class Looks(Story):
    CONTRAST = """
        const parts = (text) => text.match(/[\\d.]+/g).map(Number);
        const luminance = ([r, g, b]) => [r, g, b].map((c) => (c /= 255) <= 0.03928 ? c / 12.92 : ((c + 0.055) / 1.055) ** 2.4)
            .reduce((sum, c, i) => sum + c * [0.2126, 0.7152, 0.0722][i], 0);
        const back = (each) => {
            for (; each; each = each.parentElement) {
                const colour = parts(getComputedStyle(each).backgroundColor);
                if (colour.length < 4 || colour[3] > 0.5) return colour;
            }
            return [255, 255, 255];
        };
        return [...document.querySelectorAll('body *')].filter((each) => each.checkVisibility() && !each.closest('.skip') &&
                [...each.childNodes].some((node) => node.nodeType === 3 && node.textContent.trim())).map((each) => {
            const [light, dark] = [luminance(parts(getComputedStyle(each).color)), luminance(back(each))].sort((a, b) => b - a);
            return [each.textContent.trim().slice(0, 40), (light + 0.05) / (dark + 0.05)];
        }).filter(([, ratio]) => ratio < 4.5);"""

    def test_texts_stand_out_and_nothing_is_cut_off_at_any_width(self):
        self.load("DualProcessGray.hap")
        driver = self.browser.driver
        for scheme in ("light", "dark"):
            driver.execute_cdp_cmd("Emulation.setEmulatedMedia", {"features": [{"name": "prefers-color-scheme", "value": scheme}]})
            for width, height in ((1920, 1080), (1024, 768), (390, 844)):
                driver.execute_cdp_cmd("Emulation.setDeviceMetricsOverride",
                                       {"width": width, "height": height, "deviceScaleFactor": 1, "mobile": False})
                for panel in ("Machine", "Acquisition", "Parameters", "Configurations", "Notices", "Log", "Rehearsal"):
                    if self.browser.run("return ovraViewer.panel?.title") != panel:
                        self.browser.press(panel, "#panels")
                    wait_for(lambda: self.text_of("#panel h2"), "the panel")
                    with self.subTest(scheme=scheme, width=width, panel=panel):
                        self.assertEqual(self.browser.run(self.CONTRAST), [])
                        self.assertLessEqual(self.browser.run("return document.documentElement.scrollWidth"), width)
                        self.assertEqual(self.browser.run(
                            "return [...document.querySelectorAll('button, label, h2, h3, p')].filter((each) => each.checkVisibility() && "
                            "each.scrollWidth > each.clientWidth + 1 && each.clientWidth).map((each) => each.textContent)"), [])
                self.browser.keep_picture(f"{scheme}-{width}")
        driver.execute_cdp_cmd("Emulation.clearDeviceMetricsOverride", {})


if __name__ == "__main__":
    run_tests()
