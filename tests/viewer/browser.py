"""A real browser with the viewer's page in it."""

import os
import shutil
import tempfile

from selenium import webdriver
from selenium.common.exceptions import ElementNotInteractableException, StaleElementReferenceException
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.common.by import By
from selenium.webdriver.common.keys import Keys
from selenium.webdriver.support.ui import Select

from harness import ARGUMENTS, LIMIT, wait_for

FLAGS = ("--headless=new", "--no-sandbox", "--disable-dev-shm-usage", "--window-size=1280,800", "--use-gl=angle",
         "--use-angle=swiftshader", "--enable-unsafe-swiftshader", "--force-device-scale-factor=1",
         "--force-color-profile=srgb")


class Browser:
    def __init__(self):
        options = webdriver.ChromeOptions()
        options.binary_location = "/usr/bin/chromium"
        for flag in FLAGS:
            options.add_argument(flag)
        options.set_capability("goog:loggingPrefs", {"browser": "ALL"})
        self.driver = webdriver.Chrome(service=Service("/usr/bin/chromedriver"), options=options)
        self.driver.set_script_timeout(LIMIT)
        self.downloads = tempfile.mkdtemp(prefix="ovra-downloads-")
        self.driver.execute_cdp_cmd("Browser.grantPermissions", {"permissions": ["clipboardReadWrite", "clipboardSanitizedWrite"]})
        self.driver.execute_cdp_cmd("Browser.setDownloadBehavior", {"behavior": "allow", "downloadPath": self.downloads})

    def open(self, viewer, extra=""):
        self.driver.get("about:blank")  # another fragment alone would load nothing
        self.driver.get(viewer.address + extra)
        wait_for(lambda: self.run("return document.body.dataset.ready === 'true'"), "the page is ready")
        self.run("""
            const {connection} = ovraViewer, {sendObject} = connection, {message} = connection.handlers;
            ovraViewer.traffic = {fromPage: {}, fromProgram: {}};
            connection.sendObject = (each) => {
                ovraViewer.traffic.fromPage[each.type + each.name] = each;
                sendObject.call(connection, each);
            };
            connection.handlers.message = (each) => {
                ovraViewer.traffic.fromProgram[each.type + each.section] = each;
                message(each);
            };""")

    def traffic(self):
        """The latest message of each kind since the page was opened."""
        return self.run("return ovraViewer.traffic") or {}

    def run(self, script, *arguments):
        return self.driver.execute_script(script, *arguments)

    def find(self, selector):
        return wait_for(lambda: self.driver.find_elements(By.CSS_SELECTOR, selector), selector)[0]

    def press(self, label, within="body"):
        """Presses the button that a screen reader calls `label`, once it can be pressed."""
        script = """
            const named = (each) => (each.getAttribute('aria-label') ?? each.textContent) === arguments[1];
            const found = [...document.querySelectorAll(arguments[0] + ' button')].find((each) => named(each) && !each.disabled);
            found?.click();
            return Boolean(found);"""
        wait_for(lambda: self.run(script, within, label), f"button {label}")

    def request(self, request, /, **arguments):
        """As a page's own part would ask. Throws with the text of a refusal."""
        answer = self.driver.execute_async_script(
            """const [name, given, done] = arguments;
            ovraViewer.connection.request(name, given).then((result) => done({result}), (error) => done({text: error.message}));""",
            request, arguments)
        if "text" in answer:
            raise RuntimeError(answer["text"])
        return answer["result"]

    def shown_image(self, channel):
        """Number of the image that a tile shows; 0 before the first."""
        return int(self.run("return document.querySelector(`[data-channel='${arguments[0]}']`)?.dataset.image ?? 0", channel))

    def wait_for_images(self, channel, more=2):
        before = self.shown_image(channel)
        wait_for(lambda: self.shown_image(channel) >= before + more, f"images of {channel}")

    def pixels(self, channel):
        """(width, height, list of [red, green, blue, alpha]) of what a tile's canvas shows."""
        return self.run(
            """const canvas = document.querySelector(`[data-channel='${arguments[0]}'] canvas.image`);
            const copy = document.createElement('canvas');
            copy.width = canvas.width; copy.height = canvas.height;
            const context = copy.getContext('2d');
            context.drawImage(canvas, 0, 0);
            return [copy.width, copy.height, [...context.getImageData(0, 0, copy.width, copy.height).data]];""", channel)

    def errors(self):
        """What the page complained of in the browser's console."""
        return [each["message"] for each in self.driver.get_log("browser") if each["level"] == "SEVERE"]

    def keep_picture(self, name):
        if ARGUMENTS.screenshots:
            os.makedirs(ARGUMENTS.screenshots, exist_ok=True)
            self.driver.save_screenshot(os.path.join(ARGUMENTS.screenshots, name + ".png"))

    def downloaded(self, ending):
        """The path of a file that a press of a button brought, once it is whole."""
        def complete():
            return [each for each in os.listdir(self.downloads) if each.endswith(ending)]
        return os.path.join(self.downloads, wait_for(complete, f"a download *{ending}")[0])

    def size_of_copied_picture(self):
        """[width, height] of the picture in the clipboard."""
        return self.driver.execute_async_script(
            """const done = arguments[0];
            navigator.clipboard.read().then(([item]) => item.getType('image/png')).then(createImageBitmap)
                .then(({width, height}) => done([width, height]), (error) => done(error.message));""")

    def touch(self, kind, *points):
        """Fingers on the screen, in CSS pixels of the page; none: they are lifted."""
        self.driver.execute_cdp_cmd("Input.dispatchTouchEvent", {
            "type": kind, "touchPoints": [{"x": x, "y": y, "id": i} for i, (x, y) in enumerate(points)]})

    def once_more(self, act, what):
        """What changes elsewhere makes fields anew, so a field that was found may be gone."""
        def done():
            try:
                act()
                return True
            except (StaleElementReferenceException, ElementNotInteractableException):
                return False
        wait_for(done, what)

    def choose(self, selector, text):
        self.once_more(lambda: Select(self.find(selector)).select_by_visible_text(text), selector)

    def click(self, selector):
        self.once_more(lambda: self.find(selector).click(), selector)

    def send(self, selector, *keys):
        self.once_more(lambda: self.find(selector).send_keys(*keys), selector)

    def fill(self, selector, text, *keys):
        """Replaces what stands in a field."""
        self.send(selector, Keys.CONTROL, "a", Keys.NULL, text, *keys)

    def end(self):
        self.driver.quit()
        shutil.rmtree(self.downloads, ignore_errors=True)
