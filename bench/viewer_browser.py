"""How long a browser that is open waits for the viewer: from the program's start to its page, and from pressing
"Start" to the first picture on the canvas. Medians of five programs.

    /usr/bin/python3 -B bench/viewer_browser.py --viewer build/linux/stage/bin/ovra-viewer \\
        --console build/linux/stage/bin/ovra-console
"""

import os
import statistics
import sys
import time

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "../tests/viewer"))

from browser import Browser
from harness import Viewer

ROUNDS = 5
PRESS_START = """
    const done = arguments[0], [tile] = document.querySelectorAll(".tile");
    const begin = performance.now();
    const look = () => Number(tile.dataset.image) > 0 ? done(performance.now() - begin) : requestAnimationFrame(look);
    [...tile.querySelectorAll("button")].find((each) => each.getAttribute("aria-label") === "Start board 0 DMA 0").click();
    look();"""


def measure(browser):
    begin = time.monotonic()
    viewer = Viewer()
    browser.open(viewer)
    page = (time.monotonic() - begin) * 1000
    browser.press("Load SingleAreaGray.hap onto board 0")
    browser.find("[data-channel='0/0']")
    picture = browser.driver.execute_async_script(PRESS_START)
    viewer.end()
    return page, picture


def main():
    browser = Browser()
    try:
        pages, pictures = zip(*(measure(browser) for _ in range(ROUNDS)))
    finally:
        browser.end()
    print(f"from the program's start to its page in an open browser: {statistics.median(pages):.0f} ms; "
          f"from pressing Start to the first picture: {statistics.median(pictures):.0f} ms")


main()
