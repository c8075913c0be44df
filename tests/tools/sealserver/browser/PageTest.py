"""The administrator's page in Chromium, as its user sees it: PageTest.py <sealserver>"""

import os
import re
import shutil
import sys
import tempfile
import unittest

from selenium.common.exceptions import WebDriverException
from selenium.webdriver.common.action_chains import ActionChains
from selenium.webdriver.common.by import By
from selenium.webdriver.common.keys import Keys
from selenium.webdriver.support.wait import WebDriverWait

from Seals import Server, es_seal, open_browser, red_square

PROGRAM = sys.argv.pop(1)

LIST = ("<ROOT><REQUESTTYPE>GetSealList</REQUESTTYPE><SN>1A2B3C</SN>"
        "<DN>C=CN, O=测试公司, CN=Zhang San</DN></ROOT>")


def luminance(colour):
    parts = [int(part) / 255 for part in re.findall(r"\d+", colour)[:3]]
    linear = [c / 12.92 if c <= 0.03928 else ((c + 0.055) / 1.055) ** 2.4 for c in parts]
    return 0.2126 * linear[0] + 0.7152 * linear[1] + 0.0722 * linear[2]


def contrast(first, second):
    high, low = sorted((luminance(first), luminance(second)), reverse=True)
    return (high + 0.05) / (low + 0.05)


class Page(unittest.TestCase):
    """One browser for all tests of a class, and a server for each."""

    javascript = False

    @classmethod
    def setUpClass(cls):
        folder = tempfile.mkdtemp(prefix="sealserver-browser-")
        cls.addClassCleanup(shutil.rmtree, folder, ignore_errors=True)
        cls.browser = open_browser(folder, cls.javascript)
        cls.addClassCleanup(cls.browser.quit)

    def setUp(self):
        self.server = Server(PROGRAM)
        self.addCleanup(self.server.close)
        self.browser.delete_all_cookies()
        self.browser.get_log("browser")
        self.go("/")

    def go(self, path):
        self.browser.get(self.server.address + path)

    def one(self, selector):
        return self.browser.find_element(By.CSS_SELECTOR, selector)

    def text(self):
        return self.one("body").text

    def place(self):
        return self.browser.current_url[len(self.server.address):]

    def notice(self):
        return self.one(".notice").text

    def fill(self, name, value):
        self.one("#" + name).send_keys(value)

    def leave_by(self, action):
        """Until the next page has taken the place of this one and is there as a whole."""
        page = self.one("html")
        action()

        def is_another(browser):
            return (self.one("html") != page
                    and browser.execute_script("return document.readyState") == "complete")

        # Between two pages the driver may find neither, and has several errors for it.
        WebDriverWait(self.browser, 30, ignored_exceptions=[WebDriverException]).until(is_another)

    def press(self, label):
        self.leave_by(self.browser.find_element(By.XPATH, f"//button[.='{label}']").click)

    def follow(self, label):
        self.leave_by(self.browser.find_element(By.LINK_TEXT, label).click)

    def type(self, *keys):
        """Into whatever has the focus."""
        ActionChains(self.browser).send_keys(*keys).perform()

    def log_in(self):
        self.fill("password", self.server.password)
        self.press("Log in")

    def add_certificate(self):
        self.fill("file", self.server.certificate("/C=CN/O=测试公司/CN=Zhang San"))
        self.press("Add certificate")

    def add_seal(self, number="7001", name=""):
        self.fill("file", self.server.file("seal.dat", es_seal("财务专用章", red_square())))
        self.fill("number", number)
        self.fill("name", name)
        self.press("Add seal")


class WithoutScripts(Page):
    def test_whoever_is_not_logged_in_sees_the_login(self):
        self.assertEqual(self.place(), "/login")
        self.go("/certificates/1")
        self.assertEqual(self.place(), "/login")

    def test_a_wrong_password_is_told(self):
        self.fill("password", "wrong")
        self.press("Log in")
        self.assertEqual(self.notice(), "The password is wrong.")
        self.assertEqual(self.one(".notice").get_attribute("role"), "alert")

    def test_the_keyboard_is_enough(self):
        self.leave_by(lambda: self.type(self.server.password, Keys.ENTER))
        self.assertEqual(self.place(), "/certificates")
        self.type(Keys.TAB)
        self.assertEqual(self.browser.switch_to.active_element.text, "Skip to the content")
        seen = []
        for _ in range(10):
            self.type(Keys.TAB)
            active = self.browser.switch_to.active_element
            seen.append(active.get_attribute("id") or active.text)
        for needed in ("Certificates", "Log out", "file", "serial", "name", "Add certificate"):
            self.assertIn(needed, seen)

    def test_a_seal_from_its_certificate_to_its_removal(self):
        self.log_in()
        self.assertIn("No certificate is known yet.", self.text())
        self.add_certificate()
        self.assertEqual(self.notice(), "Added.")
        self.assertIn("C=CN, O=测试公司, CN=Zhang San", self.text())
        self.assertIn("1A2B3C", self.text())
        self.add_seal()
        self.assertIn("财务专用章", self.text())
        self.assertIn("<COUNT>1</COUNT>", self.server.ask(LIST))
        picture = self.one("td img")
        self.assertEqual(picture.get_property("naturalWidth"), 60)
        self.assertEqual(picture.get_attribute("alt"), "Picture of 财务专用章")
        self.press("Suspend")
        self.assertIn("suspended", self.notice())
        self.assertIn("<COUNT>0</COUNT>", self.server.ask(LIST))
        self.press("Resume")
        self.assertIn("<SEALNAME>财务专用章</SEALNAME>", self.server.ask(LIST))
        self.follow("财务专用章")
        self.assertEqual(self.one("h1").text, "财务专用章")
        self.assertEqual(self.one("img.large").get_property("naturalWidth"), 60)
        self.follow("Remove")
        self.follow("Keep it")
        self.assertEqual(self.place(), "/seals/1")
        self.follow("Remove")
        self.press("Remove for good")
        self.assertEqual(self.notice(), "Removed.")
        self.assertIn("<COUNT>0</COUNT>", self.server.ask(LIST))

    def test_a_file_that_is_no_seal_is_refused_on_the_same_page(self):
        self.log_in()
        self.add_certificate()
        self.fill("file", self.server.file("x", b"text"))
        self.press("Add seal")
        self.assertTrue(self.notice().startswith("The file is no seal"))
        self.assertIn("It has no seals yet.", self.text())

    def test_a_file_that_is_too_large_is_told_in_a_sentence(self):
        self.log_in()
        self.add_certificate()
        self.fill("file", self.server.file("large.dat", bytes(20 << 20)))
        self.press("Add seal")
        self.assertTrue(self.notice().startswith("This is too large: a file may have 8 MiB."))
        self.assertEqual(self.one(".notice").get_attribute("role"), "alert")
        self.go("/certificates/1")
        self.assertIn("It has no seals yet.", self.text())

    def test_texts_are_shown_as_they_are(self):
        evil = "\"><img src=x onerror=alert(1)><script>alert(2)</script>&amp;"
        self.log_in()
        self.fill("serial", "99")
        self.fill("name", evil)
        self.press("Add certificate")
        self.assertIn(evil, self.text())
        self.add_seal(name=evil)
        self.assertIn(evil, self.text())
        self.assertEqual(len(self.browser.find_elements(By.TAG_NAME, "script")), 0)
        self.assertEqual(len(self.browser.find_elements(By.CSS_SELECTOR, "img:not(.seal)")), 0)

    def test_after_the_logout_nothing_is_left_to_see(self):
        self.log_in()
        self.add_certificate()
        self.press("Log out")
        self.assertEqual(self.notice(), "You are logged out.")
        self.leave_by(self.browser.back)
        self.assertNotIn("Zhang San", self.text())
        self.go("/certificates")
        self.assertEqual(self.place(), "/login")

    def test_scripts_of_a_page_cannot_read_the_cookie(self):
        self.log_in()
        cookie = self.browser.get_cookie("sealserver-session")
        self.assertTrue(cookie["httpOnly"])
        self.assertEqual(cookie["sameSite"], "Strict")


class WithScripts(Page):
    javascript = True

    def scheme(self, value):
        self.browser.execute_cdp_cmd("Emulation.setEmulatedMedia", {
            "features": [{"name": "prefers-color-scheme", "value": value}]})

    def colours(self, selector):
        """Of the text, and of what is painted behind it."""
        element = self.one(selector)
        return element.value_of_css_property("color"), self.browser.execute_script(
            "let e = arguments[0];"
            "while (getComputedStyle(e).backgroundColor === 'rgba(0, 0, 0, 0)') e = e.parentElement;"
            "return getComputedStyle(e).backgroundColor", element)

    def fill_the_page(self):
        self.log_in()
        self.add_certificate()
        self.add_seal()
        self.press("Suspend")

    def test_nothing_is_loaded_from_elsewhere_and_nothing_is_blocked(self):
        self.fill_the_page()
        for path in ("/certificates", "/certificates/1", "/seals/1", "/seals/1/remove", "/password"):
            self.go(path)
            names = self.browser.execute_script(
                "return performance.getEntriesByType('resource').map(e => e.name)")
            for name in names:
                self.assertTrue(name.startswith(self.server.address + "/"), name)
        # No policy violation, no failed image, no script.
        self.assertEqual([entry["message"] for entry in self.browser.get_log("browser")], [])

    def test_text_stands_out_in_light_and_dark(self):
        self.fill_the_page()
        pages = {}
        for value in ("light", "dark"):
            self.scheme(value)
            pages[value] = self.colours("body")[1]
            for selector in ("h1", ".notice", "th", "td a", ".suspended", ".hint", ".main", "dt",
                             ".tag", "td button", "label"):
                ratio = contrast(*self.colours(selector))
                self.assertGreaterEqual(ratio, 4.5, f"{selector} in {value}")
        self.assertNotEqual(pages["light"], pages["dark"])

    def test_every_field_has_a_label_and_every_table_a_caption(self):
        self.fill_the_page()
        for path in ("/certificates", "/certificates/1", "/password"):
            self.go(path)
            for field in self.browser.find_elements(By.CSS_SELECTOR, "input:not([type=hidden]):not([hidden])"):
                self.assertNotEqual(field.accessible_name, "", path)
            for table in self.browser.find_elements(By.TAG_NAME, "table"):
                self.assertEqual(len(table.find_elements(By.TAG_NAME, "caption")), 1)
            self.assertEqual(self.one("html").get_attribute("lang"), "en")
            self.assertEqual(len(self.browser.find_elements(By.TAG_NAME, "h1")), 1)

    def test_a_narrow_window_needs_no_sideways_scrolling(self):
        self.fill_the_page()
        self.browser.execute_cdp_cmd("Emulation.setDeviceMetricsOverride", {
            "width": 360, "height": 740, "deviceScaleFactor": 1, "mobile": True})
        self.addCleanup(self.browser.execute_cdp_cmd, "Emulation.clearDeviceMetricsOverride", {})
        for path in ("/certificates", "/certificates/1", "/seals/1", "/password"):
            self.go(path)
            width = self.browser.execute_script("return document.documentElement.scrollWidth")
            self.assertLessEqual(width, 360, path)


if __name__ == "__main__":
    os.environ.pop("DISPLAY", None)
    unittest.main(verbosity=2)
