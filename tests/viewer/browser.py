"""A real browser with the viewer's page in it."""

import os

from selenium import webdriver
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.common.by import By

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

    def open(self, viewer, extra=""):
        self.driver.get("about:blank")  # another fragment alone would load nothing
        self.driver.get(viewer.address + extra)
        wait_for(lambda: self.run("return document.body.dataset.ready === 'true'"), "the page is ready")

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

    def end(self):
        self.driver.quit()
