"""check_pages.py PAGES HERE [--write]: looks at the sample pages in a browser."""

import json
import os
import re
import sys

PAGES, HERE = sys.argv[1:3]
sys.path.insert(0, os.path.join(HERE, "../../browser"))
import looks  # noqa: E402
import png  # noqa: E402
from browser import Browser  # noqa: E402

WIDTHS = (390, 1280)
faults = []


def expect(holds, fault):
    if not holds:
        faults.append(fault)


def path(name):
    return os.path.join(PAGES, name + ".html")


# Page; class of the verdict, its heading, how many tests look how.
VERDICTS = {
    "sound": ("pass", "Both tests passed", {"pass": 2}),
    "faulty": ("fail", "1 of 4 tests found a fault", {"fail": 1, "warn": 1, "open": 2, "pass": 1}),
    "burn-in": ("fail", "5 of 80 tests found a fault", {"fail": 5, "pass": 75}),
    "cut-off": ("open", "The run did not end", {"pass": 1, "open": 1}),
    "hostile": ("fail", "The test found a fault", {"fail": 1}),
}

VERDICT = """(() => {
  const counts = {};
  for (const test of document.querySelectorAll('article.test')) {
    const look = test.classList[2];
    counts[look] = (counts[look] || 0) + 1;
  }
  return [document.querySelector('header.verdict').classList[1],
          document.querySelector('h1').textContent, counts];
})()"""


def check_verdicts(browser):
    for name, (look, heading, counts) in VERDICTS.items():
        browser.look(path(name))
        seen = browser.value(VERDICT)
        expect(seen == [look, heading, counts], f"{name}: the verdict is {seen}")


# What no page may hold, and what only the page itself may give a style.
FOREIGN = """[...document.querySelectorAll('script,img,iframe,object,embed,base,form,link,video,audio')]
  .map(e => e.tagName).concat(
  [...document.querySelectorAll('*')].flatMap(e => [...e.attributes])
    .filter(a => /^on|^style$|^src/.test(a.name) || (a.name === 'href' && !/^#t[0-9]+$/.test(a.value)))
    .map(a => a.name + '=' + a.value))"""


def check_nothing_foreign(browser):
    for name in VERDICTS:
        browser.look(path(name))
        foreign = browser.value(FOREIGN)
        expect(foreign == [], f"{name}: it holds {foreign}")
        expect(browser.value("document.styleSheets.length === 1 && "
                             "getComputedStyle(document.querySelector('.card')).borderRadius")
               == "12px", f"{name}: its style does not hold; is the hash the style's?")
    expect("<script>" in browser.value("document.body.innerText"),
           "hostile: the text of the script cannot be read")


def check_links(browser):
    for name in VERDICTS:
        browser.look(path(name))
        dead = browser.value("[...document.querySelectorAll('a')].map(a => a.getAttribute('href'))"
                             ".filter(h => !document.querySelector(h))")
        expect(dead == [], f"{name}: links lead nowhere: {dead}")
        twice = browser.value("[...document.querySelectorAll('[id]')].map(e => e.id)"
                              ".filter((id, i, all) => all.indexOf(id) !== i)")
        expect(twice == [], f"{name}: identifiers twice: {twice}")


BOXES = """[...document.querySelectorAll(
    'header.verdict,h1,.counts,#actions,.machine,.machine>:nth-child(2),.list li:first-child *,' +
    '.timeline .row:first-child>*,.test:first-of-type,.test:first-of-type>header>*,.says,td')]
  .filter(e => e.getClientRects().length && !['svg','path','SPAN','rect'].includes(e.tagName)
            || e.classList[0] === 'bars')
  .slice(0, 60).map(e => {
    const box = e.getBoundingClientRect();
    return [e.tagName.toLowerCase() + '.' + (e.className.baseVal ?? e.className).trim(),
            Math.round(box.left), Math.round(box.width)];
  })"""

# Texts are as wide as their letters: of these it is known only that they keep within the page.
FREE = re.compile(r"^(span|a|h1|h3|b|p)\b|\.badge|^td|^div\.$")


def layout(browser):
    boxes = {}
    for width in WIDTHS:
        browser.look(path("faulty"), width)
        boxes[str(width)] = [box for box in browser.value(BOXES) if not FREE.search(box[0])]
    return boxes


def check_layout(browser):
    file = os.path.join(HERE, "layout.json")
    seen = layout(browser)
    if "--write" in sys.argv:
        with open(file, "w", encoding="utf-8") as out:
            out.write("{\n" + ",\n".join(
                f' "{width}": [\n' + ",\n".join("  " + json.dumps(box) for box in boxes) + "\n ]"
                for width, boxes in seen.items()) + "\n}\n")
        return
    with open(file, encoding="utf-8") as expected_file:
        expected = json.load(expected_file)
    for width in seen:
        names = [box[0] for box in seen[width]]
        expect(names == [box[0] for box in expected[width]], f"{width}: other boxes: {names}")
        for box, wanted in zip(seen[width], expected[width]):
            far = max(abs(box[1] - wanted[1]), abs(box[2] - wanted[2]))
            expect(far <= 2, f"at {width}: {box} instead of {wanted}")


def check_fits(browser):
    """Nothing is wider than the page, on paper neither, and no part lies on another."""
    for name in VERDICTS:
        for width, media in ((390, "screen"), (1280, "screen"), (690, "print")):
            browser.look(path(name), width, media=media)
            wide = browser.value("document.documentElement.scrollWidth")
            expect(wide <= width, f"{name} at {width} on {media}: {wide} wide")
            overlaps = browser.value("""(() => {
              const boxes = [...document.querySelectorAll('header.verdict,section,footer')]
                .map(e => e.getBoundingClientRect());
              return boxes.filter((b, i) => i && b.top < boxes[i - 1].bottom - 1).length;
            })()""")
            expect(overlaps == 0, f"{name} at {width} on {media}: {overlaps} parts overlap")


def check_kinds(browser):
    """The kind of a part stands on one line, however long the part's name is."""
    for width in WIDTHS:
        browser.look(path("faulty"), width)
        broken = browser.value("[...document.querySelectorAll('.machine .kind')]"
                               ".filter(e => e.getClientRects()[0].height > 28)"
                               ".map(e => e.textContent)")
        expect(broken == [], f"at {width}: in several lines: {broken}")


def check_screenshots(browser):
    """The verdict's colour at the top, and light and dark what they say."""
    for width in WIDTHS:
        for scheme in ("light", "dark"):
            for name, has_tone in (("faulty", looks.is_reddish), ("sound", looks.is_greenish)):
                browser.look(path(name), width, height=500, scheme=scheme)
                picture = png.read(browser.screenshot(whole=False))
                what = f"{name} at {width} in {scheme}"
                expect(picture.width == width, f"{what}: {picture.width} wide")
                expect(has_tone(picture.at(width // 2, 4)), f"{what}: the verdict has no colour")
                paper = looks.brightness(picture.at(3, picture.height - 3))
                expect(paper > 0.9 if scheme == "light" else paper < 0.2,
                       f"{what}: the paper is {paper:.2f} bright")
                expect(len(picture.colours()) > 30, f"{what}: there is nothing to see")


def check_contrast(browser):
    """Text can be told from its ground by those who see badly, too."""
    for scheme in ("light", "dark"):
        for name in ("faulty", "sound", "cut-off"):
            browser.look(path(name), scheme=scheme)
            weak = browser.value(looks.CONTRAST)
            expect(weak == [], f"{name} in {scheme}: too little contrast: {weak}")


def check_policy():
    """The hash that the page's policy names is the style's own."""
    for digest in looks.unnamed(path("sound")):
        expect(False, f"kStyleHash in reports/html/Style.cpp has to be {digest}")


def main():
    check_policy()
    browser = Browser()
    try:
        for check in (check_verdicts, check_nothing_foreign, check_links, check_layout, check_fits, check_kinds,
                      check_screenshots, check_contrast):
            check(browser)
        expect(browser.complaints == [], f"the browser complains: {browser.complaints}")
    finally:
        browser.close()
    for fault in faults:
        print(fault[:2000])
    return 1 if faults else 0


sys.exit(main())
