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
from harness import ARGUMENTS, LIMIT, Socket, Viewer, command, native_path, read_png, run_tests, wait_for

NOISE = 16  # grey values by which two images of one scene differ
BOARD, SINGLE, DUAL = "1a2b3c", "SingleAreaGray.hap", "DualAreaCxp.hap"


def scene_picture(applet=SINGLE, board=0):
    """The picture that the console saves of the same scene: (width, height, rows)."""
    with tempfile.TemporaryDirectory() as folder:
        script = os.path.join(folder, "script")
        with open(script, "w", encoding="utf-8") as file:
            file.write(f"load {board} {applet}\nstart {board} dma 0\nwait 2 images {board} 0\n"
                       f"save-image {board} 0 picture.png\n")
        subprocess.run(command(ARGUMENTS.console, "--script", native_path(script), "--output-dir", native_path(folder)),
                       check=True, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, timeout=LIMIT)
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

    def state(self, section):
        return self.browser.run("return ovraViewer.state.get(arguments[0])", section)

    def tile(self, expression, channel="0/0"):
        return self.browser.run(
            f"""const tile = [...ovraViewer.tiles.tiles.values()].find((each) => each.root.dataset.channel === '{channel}');
            return {expression};""")

    def screen_points(self, points):
        """Where image points lie on the canvas of the first tile."""
        return self.browser.run(
            """const [tile] = ovraViewer.tiles.tiles.values();
            return arguments[0].map(([x, y]) => tile.geometry.toScreen({x: x + 0.5, y: y + 0.5}));""", points)

    def text_of(self, selector):
        return self.browser.run("return document.querySelector(arguments[0])?.textContent ?? ''", selector)

    def show_all_pixels(self):
        """One to one, where none are blended."""
        self.browser.find(".tile .stage").send_keys("1")
        wait_for(lambda: self.tile("tile.image?.view === tile.view && tile.image.binning === 1 && !tile.drawing"), "all pixels")

    def point_at(self, pixel):
        """Moves the mouse over a pixel of the first tile's image; what the page says of it."""
        stage = self.browser.find(".tile .stage")
        place = self.screen_points([pixel])[0]
        size = stage.size
        ActionChains(self.browser.driver, duration=0).move_to_element_with_offset(
            stage, int(place["x"] - size["width"] / 2), int(place["y"] - size["height"] / 2)).perform()
        expected = [int(number) for number in self.tile("tile.pixel")]
        start = f"x {expected[0]}, y {expected[1]}: "
        text = wait_for(lambda: self.text_of(".position").startswith(start) and self.text_of(".position"), "the value there")
        return [int(number) for number in re.findall(r"\d+", text)]


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
        _, _, rows = scene_picture()
        self.acquire()
        self.browser.press("Stop board 0 DMA 0", ".tile")
        wait_for(lambda: self.text_of(".why").startswith("Stopped"), "the tile says that it is stopped")
        inner = [(x, y) for y in range(600, 740, 3) for x in range(300, 700, 3)]
        extremes = [choose(inner, key=lambda pixel: rows[pixel[1]][pixel[0]]) for choose in (min, max)]
        for key in ("", "1", "+", "r", "f"):
            if key:
                self.browser.find(".tile .stage").send_keys(key)
            for pixel in extremes:
                place = self.screen_points([pixel])[0]
                size = self.browser.find(".tile .stage").size
                if not (0 < place["x"] < size["width"] and 0 < place["y"] < size["height"]):
                    continue
                x, y, value = self.point_at(pixel)
                self.assertLessEqual(max(abs(x - pixel[0]), abs(y - pixel[1])), 3, key)
                self.assertLessEqual(abs(value - rows[y][x]), NOISE, f"after {key!r} at {x}, {y}")

    def test_contrast_stretches_what_lies_between_the_handles(self):
        self.acquire()
        self.browser.press("Stop board 0 DMA 0", ".tile")
        wait_for(lambda: self.text_of(".why").startswith("Stopped"), "stopped")
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
        self.browser.press("Stop board 0 DMA 0", ".tile")
        wait_for(lambda: self.text_of(".why").startswith("Stopped"), "stopped")
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


class Questions(Story):
    def test_each_answer_does_what_its_button_says(self):
        sizes = {2: (1023, 1024), 0: (1024, 1024), 1: (1023, 1023)}  # of channel and camera; the camera keeps its own
        for button, expected in sizes.items():
            with self.subTest(button=button):
                self.load(DUAL, 1)
                self.browser.request("set-sync-mode", mode=2)
                self.start("1/0")
                self.browser.find(f"dialog[open] [data-button='{button}']").click()
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
        self.browser.find("#remember").click()
        self.browser.find("dialog[open] [data-button='2']").click()
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
        self.load()
        first = self.state("boards")
        self.browser.driver.refresh()
        wait_for(lambda: self.browser.run("return document.body.dataset.ready === 'true'"), "ready again")
        self.assertEqual(self.state("boards"), first)
        with Socket(self.viewer) as other:
            self.assertEqual(other.hello()["state"]["boards"], first)
            other.request("unload", board=BOARD)
        wait_for(lambda: not self.state("boards")[0]["applet"], "the page sees what another one did")

    def test_a_program_that_comes_back_is_found_again(self):
        old = self.viewer
        old.kill()
        wait_for(lambda: self.browser.run("return document.body.dataset.connection === 'away'"), "the page says so")
        self.viewer = Viewer(port=old.port)
        self.assertEqual(self.viewer.port, old.port)
        first = self.browser.driver.current_window_handle
        self.browser.driver.switch_to.new_window("tab")
        self.browser.open(self.viewer)  # as the program itself opens it
        self.browser.driver.close()
        self.browser.driver.switch_to.window(first)
        wait_for(lambda: self.browser.run("return document.body.dataset.connection === 'open'"), "let in again")

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
    def type_into(self, selector, text):
        # At once: a change in between is one, and makes the field anew.
        self.browser.find(selector).send_keys(Keys.CONTROL, "a", Keys.NULL, text, Keys.ENTER)

    def test_a_parameter_is_set_and_a_value_that_is_refused_stays_with_the_reason(self):
        self.load()
        self.browser.press("Parameters")
        self.type_into("#parameter-GAIN", "99")
        reason = wait_for(lambda: self.text_of("#parameter-GAIN-about.error"), "the reason")
        self.assertIn("GAIN", reason)
        self.assertIn("16", reason)
        self.assertEqual(self.browser.run("return document.querySelector('#parameter-GAIN').value"), "99")
        self.type_into("#parameter-GAIN", "2.5")
        wait_for(lambda: not self.text_of("#parameter-GAIN-about.error"), "accepted")
        values = {each["name"]: each["value"] for each in self.browser.request("list-parameters", board=BOARD, dma=0)}
        self.assertEqual(values["GAIN"], "2.5")
        self.type_into("#parameter-FG_WIDTH", "512")
        wait_for(lambda: self.state("boards")[0]["processes"][0]["channels"][0]["width"] == 512, "the channel's size")

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
        self.browser.find("#upload").send_keys(path)
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
                for panel in ("Machine", "Acquisition", "Parameters", "Configurations", "Notices", "Log"):
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
