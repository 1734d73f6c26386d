"""check_pages.py PAGES HERE [--write]: looks at the sample pages of fleets in a browser."""

import json
import os
import sys
import urllib.parse

PAGES, HERE = sys.argv[1:3]
sys.path.insert(0, os.path.join(HERE, "../../browser"))
import looks  # noqa: E402
import png  # noqa: E402
from browser import Browser  # noqa: E402

WIDTHS = (390, 1280)
NAMES = ("sound", "faulty", "large", "wide", "hostile")
ROWS_ON_A_PAGE = 50

# Of the page of 10,000 machines with 40 tests.
MOST_MEGABYTES = 3
MOST_ELEMENTS = 6000
MOST_SECONDS_TO_DRAW = 2
MOST_SECONDS_TO_REDRAW = 0.5

faults = []


def expect(holds, fault):
    if not holds:
        faults.append(fault)


def path(name):
    return os.path.join(PAGES, name + ".html")


def ask(browser, **wanted):
    """Puts it behind the address's "#", as a link does, and waits until that is drawn."""
    fragment = urllib.parse.urlencode(wanted)
    browser.call("Runtime.evaluate", awaitPromise=True, expression=f"""
      new Promise(done => {{
        const before = location.hash;
        addEventListener('hashchange', () => done(), {{once: true}});
        location.hash = {json.dumps(fragment)};
        if (location.hash === before) done();
      }})""")


def shown(browser):
    """The machines whose rows are there."""
    return browser.value("[...document.querySelectorAll('#matrix tr.row th button')].map(b => b.textContent)")


def status(browser):
    return browser.value("document.querySelector('#matrix [role=status]').textContent")


# Page; class of the verdict, its heading, machines in the table.
VERDICTS = {
    "sound": ("pass", "All 3 machines passed", "3 machines of 3"),
    "faulty": ("fail", "3 of 41 machines failed", "41 machines of 41"),
    "large": ("fail", "200 of 10,000 machines failed", "10,000 machines of 10,000"),
    "wide": ("fail", "2 of 60 machines failed", "60 machines of 60"),
    "hostile": ("fail", "1 of 3 machines failed", "3 machines of 3"),
}


def check_verdicts(browser):
    for name, (look, heading, machines) in VERDICTS.items():
        browser.look(path(name))
        seen = browser.value("[document.querySelector('header.verdict').classList[1],"
                             "document.querySelector('h1').textContent]")
        expect(seen == [look, heading], f"{name}: the verdict is {seen}")
        expect(status(browser) == machines, f"{name}: the table has {status(browser)}")


CELLS = """[...[...document.querySelectorAll('#matrix tr.row')]
  .find(row => row.querySelector('button').textContent === NAME).querySelectorAll('td')]
  .map(cell => cell.classList.contains('cell') ? cell.ariaLabel : cell.textContent)"""

# What the row of a machine says: its verdict, then each test.
ROWS = {
    "node-00001": ["Passed", "Passed", "Passed", "Passed", "Passed"],
    "node-00007": ["Failed", "Passed", "Failed", "Passed", "Passed"],
    "node-00010": ["Warning", "Passed", "Passed", "Warning", "Passed"],
    "node-00012": ["Passed", "Passed", "Passed", "Passed", "Skipped"],
    "node-00013": ["Passed", "Passed", "Passed", "Passed", None],
    "node-00021": ["Unfinished", "Passed", "Passed", "Unfinished", "Passed"],
    "node-00031": ["Passed1 outlier", "Passed", "Passed", "Passed", "Passed"],
    "node-00041": ["No answer", None, None, None, None],
}


def check_rows(browser):
    browser.look(path("faulty"))
    for name, wanted in ROWS.items():
        cells = browser.value(CELLS.replace("NAME", json.dumps(name)))
        expect(cells == wanted, f"{name}: its row says {cells}")


# What is asked for; how many machines there are of it, and the first ones.
QUESTIONS = (
    ({}, "41 machines of 41", ["node-00007", "node-00017", "node-00037", "node-00021", "node-00010"]),
    ({"verdict": "failed"}, "3 machines of 41", ["node-00007", "node-00017", "node-00037"]),
    ({"verdict": "warned"}, "1 machine of 41", ["node-00010"]),
    ({"verdict": "unfinished"}, "1 machine of 41", ["node-00021"]),
    ({"verdict": "none"}, "1 machine of 41", ["node-00041"]),
    ({"verdict": "slow"}, "1 machine of 41", ["node-00031"]),
    ({"verdict": "nonsense"}, "41 machines of 41", ["node-00007"]),
    ({"machine": "NODE-0003"}, "10 machines of 41", ["node-00037", "node-00030"]),
    ({"machine": "node-0003", "verdict": "failed"}, "1 machine of 41", ["node-00037"]),
    ({"machine": "<b>"}, "0 machines of 41", []),
    ({"group": "0"}, "3 machines of 41", ["node-00007", "node-00017", "node-00037"]),
    ({"group": "constructor"}, "41 machines of 41", ["node-00007"]),
    ({"sort": "name"}, "41 machines of 41", ["node-00001", "node-00002"]),
    ({"sort": "failures"}, "41 machines of 41", ["node-00007", "node-00017", "node-00037"]),
    ({"sort": "slow"}, "41 machines of 41", ["node-00031", "node-00007"]),
    ({"sort": "test2"}, "41 machines of 41", ["node-00021", "node-00010", "node-00001"]),
    ({"sort": "test3"}, "41 machines of 41", ["node-00001"]),
    ({"sort": "test999"}, "41 machines of 41", ["node-00001"]),
    ({"page": "-3"}, "41 machines of 41", ["node-00007"]),
    ({"page": "1e9"}, "41 machines of 41", ["node-00007"]),
)


def check_questions(browser):
    browser.look(path("faulty"))
    for wanted, count, first in QUESTIONS:
        ask(browser, **wanted)
        expect(status(browser) == count, f"{wanted}: {status(browser)}")
        machines = shown(browser)
        expect(machines[:len(first)] == first, f"{wanted}: first come {machines[:3]}")
        expect(first or not machines, f"{wanted}: there are {machines[:3]}")


def check_address_at_the_start(browser):
    """A link with all that is asked for shows it without a hand's turn."""
    browser.look(path("faulty"), fragment="machine=node-0000&verdict=failed&open=node-00007")
    expect(shown(browser) == ["node-00007"], f"a link leads to {shown(browser)}")
    expect(browser.value("document.querySelector('input').value") == "node-0000",
           "the search does not say what was searched")
    expect(browser.value("document.querySelector('select').value") == "failed",
           "the selection does not say what was selected")
    expect(browser.value("document.querySelectorAll('#matrix tr.details').length") == 1,
           "the machine's row is not open")


def check_details(browser):
    browser.look(path("faulty"))
    browser.value("document.querySelector('#matrix tr.row button').click()")
    ask(browser, open="node-00007")
    text = browser.value("document.querySelector('#matrix tr.details').textContent")
    for part in ("Aurora T40", "AC-40-118007", "Test 02", "3 tests", "DIMM_A2",
                 "3 memory errors, stuck bit 17", "Replace the memory module"):
        expect(part in text, f"what node-00007 opens to does not say {part}")
    expect(browser.value("document.querySelector('[aria-expanded=true]').textContent") == "node-00007",
           "the open row's button does not say that it is open")


def press(browser, selector):
    """As a user does, and waits for what comes of it."""
    browser.call("Runtime.evaluate", awaitPromise=True, expression=f"""
      new Promise(done => {{
        addEventListener('hashchange', () => done(), {{once: true}});
        const pressed = document.querySelector({json.dumps(selector)});
        pressed.focus();
        pressed.click();
      }})""")


def check_controls(browser):
    browser.look(path("large"))
    press(browser, "nav.pager:last-child button:last-child")
    first = browser.value("document.querySelector('nav.pager:last-child span').textContent")
    expect(first == "51 to 100 of 10,000", f"the next page is {first}")
    expect(len(shown(browser)) == ROWS_ON_A_PAGE, f"it has {len(shown(browser))} rows")
    expect(browser.value("document.activeElement.textContent") != "", "the focus is lost")
    press(browser, "#matrix tr.row button")
    expect(browser.value("document.activeElement.getAttribute('aria-expanded')") == "true",
           "opening a row loses the focus")
    press(browser, "#matrix th.test button")
    expect(browser.value("document.querySelector('[aria-sort=descending] span').textContent")
           == "Test 01", "the heading of a test does not sort")
    browser.call("Runtime.evaluate", awaitPromise=True, expression="""
      new Promise(done => {
        addEventListener('hashchange', () => done(), {once: true});
        const field = document.querySelector('input');
        field.focus();
        field.value = '00777';
        field.dispatchEvent(new Event('input'));
      })""")
    expect(shown(browser) == ["node-00777"], f"the search finds {shown(browser)}")
    press(browser, "#groups a")
    expect(status(browser).startswith("200 machines"), f"a group has {status(browser)}")
    drawn(browser)
    top = browser.value("document.getElementById('machines').getBoundingClientRect().top")
    expect(abs(top) < 60, f"the machines of a group are shown {top} below the top")


def check_pages_of_tests(browser):
    browser.look(path("wide"))
    heads = "[...document.querySelectorAll('#matrix th.test span')].map(h => h.textContent)"
    expect(len(browser.value(heads)) == 40, "not 40 tests are shown at once")
    ask(browser, tests=4)
    expect(browser.value(heads) == [f"Test {i}" for i in range(121, 131)],
           f"the last tests are {browser.value(heads)}")


# What no page may hold, and what only the page itself may give a style.
FOREIGN = """[...document.querySelectorAll('img,iframe,object,embed,base,form,link,video,audio')]
  .map(e => e.tagName).concat(
  [...document.querySelectorAll('*')].flatMap(e => [...e.attributes])
    .filter(a => /^on|^style$|^src/.test(a.name) || (a.name === 'href' && !a.value.startsWith('#')))
    .map(a => a.name + '=' + a.value))"""


def check_nothing_foreign(browser):
    for name in NAMES:
        browser.look(path(name))
        browser.value("document.querySelectorAll('#matrix tr.row button')[0].click()")
        foreign = browser.value(FOREIGN)
        expect(foreign == [], f"{name}: it holds {foreign[:3]}")
        expect(browser.value("document.scripts.length") == 3, f"{name}: other scripts")
        expect(browser.value("document.styleSheets.length") == 2, f"{name}: other styles")


def check_hostile_texts(browser):
    """They can be read, and do nothing; what acts unseen is spelt out."""
    browser.look(path("hostile"))
    name = shown(browser)[0]
    ask(browser, open=name)
    for place in ("main", "#matrix tr.row", "#matrix tr.details", "#groups", "#slow", "#silent", "#streams"):
        text = browser.value(f"document.querySelector('{place}').textContent")
        expect("<script>document.title='x'" in text, f"{place}: the text of the script cannot be read")
        expect("\\x1b[2J" in text and "\\u202e" in text, f"{place}: what acts unseen is not spelt out")
        acting = [c for c in text if ord(c) < 32 and c != "\n" or c in "\x7f\u202e\u2066"]
        expect(not acting, f"{place}: there is {acting[:3]}")
    expect(browser.value("document.title") == "1 of 3 machines failed", "the title was changed")
    browser.look(path("hostile"), fragment="machine=%3Cimg%20src=x%20onerror=alert(1)%3E&sort=%22%3E")
    expect(browser.value(FOREIGN) == [], "what the address says became markup")


def drawn(browser):
    browser.call("Runtime.evaluate", awaitPromise=True,
                 expression="new Promise(done => requestAnimationFrame(() => setTimeout(done)))")


def check_size_and_time(browser):
    """The page of 10,000 machines is drawn at once and stays small."""
    megabytes = os.path.getsize(path("large")) / 1e6
    browser.look(path("large"))
    drawn(browser)
    loading = browser.busy()
    ask(browser, machine=9, sort="name", page=3)
    drawn(browser)
    redrawing = browser.busy() - loading
    elements = browser.value("document.querySelectorAll('*').length")
    print(f"10,000 machines x 40 tests: {megabytes:.2f} MB, {elements} elements, "
          f"drawn in {loading:.2f} s of processor time, another choice in {redrawing:.3f} s")
    expect(megabytes < MOST_MEGABYTES, f"the page has {megabytes:.2f} MB")
    expect(loading < MOST_SECONDS_TO_DRAW, f"drawing takes {loading:.2f} s")
    expect(redrawing < MOST_SECONDS_TO_REDRAW, f"drawing again takes {redrawing:.2f} s")
    expect(elements < MOST_ELEMENTS, f"the page has {elements} elements")
    expect(len(shown(browser)) == ROWS_ON_A_PAGE, f"there are {len(shown(browser))} rows")


def check_without_script(browser):
    browser.call("Emulation.setScriptExecutionDisabled", value=True)
    browser.look(path("faulty"))
    text = browser.text()
    browser.call("Emulation.setScriptExecutionDisabled", value=False)
    for part in ("3 of 41 machines failed", "node-00007", "3 memory errors, stuck bit 17",
                 "node-00041", "Sequential read", "streams/torn.jsonl"):
        expect(part in text, f"without a script, the page does not say {part}")


BOXES = """[...document.querySelectorAll(
    'header.verdict,.counts,section,.groups,.group:first-child,.plain,.complaints,.controls,.scroller')]
  .map(e => {
    const box = e.getBoundingClientRect();
    return [(e.tagName + '.' + e.className).toLowerCase(), Math.round(box.left), Math.round(box.width)];
  })"""


def layout(browser):
    boxes = {}
    for width in WIDTHS:
        browser.look(path("faulty"), width)
        boxes[str(width)] = browser.value(BOXES)
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
    """Nothing is wider than the page; the table alone scrolls, and on paper it need not."""
    for name in ("faulty", "wide", "hostile"):
        for width, media in ((390, "screen"), (1280, "screen"), (690, "print")):
            browser.look(path(name), width, media=media, fragment="open=node-00008")
            wide = browser.value("document.documentElement.scrollWidth")
            expect(wide <= width, f"{name} at {width} on {media}: {wide} wide")
    browser.look(path("large"), 690, media="print")
    table = browser.value("document.querySelector('#matrix table').getBoundingClientRect().right")
    expect(table <= 691, f"on paper the table ends at {table}")


def check_rows_are_low(browser):
    """A machine is a line of the table, however its name could be broken."""
    for width in WIDTHS:
        browser.look(path("large"), width, fragment="verdict=failed")
        highest = browser.value("Math.max(...[...document.querySelectorAll('#matrix tr.row')]"
                                ".map(row => row.getBoundingClientRect().height))")
        expect(highest < 36, f"at {width} a row is {highest} high")


def check_screenshots(browser):
    """The verdict's colour at the top, and light and dark what they say."""
    for width in WIDTHS:
        for scheme in ("light", "dark"):
            tones = {"faulty": looks.is_reddish, "sound": looks.is_greenish}
            for name, has_tone in tones.items():
                if name == "sound" and width > 390:
                    continue  # reading large pictures takes long
                browser.look(path(name), width, height=250, scheme=scheme)
                picture = png.read(browser.screenshot(whole=False))
                what = f"{name} at {width} in {scheme}"
                expect(has_tone(picture.at(width // 2, 4)), f"{what}: the verdict has no colour")
                paper = looks.brightness(picture.at(3, picture.height - 3))
                expect(paper > 0.9 if scheme == "light" else paper < 0.2,
                       f"{what}: the paper is {paper:.2f} bright")
                expect(len(picture.colours()) > 30, f"{what}: there is nothing to see")


def check_contrast(browser):
    """Text can be told from its ground by those who see badly, too."""
    for scheme in ("light", "dark"):
        browser.look(path("faulty"), scheme=scheme, fragment="open=node-00007")
        weak = browser.value(looks.CONTRAST)
        expect(weak == [], f"in {scheme}: too little contrast: {weak}")


def check_names_for_all(browser):
    """Who does not see the table is told what its parts are."""
    browser.look(path("faulty"))
    unnamed = browser.value("""[...document.querySelectorAll('#matrix input,#matrix select')]
      .filter(e => !e.labels[0] || !e.labels[0].textContent).map(e => e.name)""")
    expect(unnamed == [], f"controls without a name: {unnamed}")
    headless = browser.value("""[...document.querySelectorAll('th')].filter(e => !e.scope).length""")
    expect(headless == 0, f"{headless} headings do not say what they head")
    colourful = browser.value("""[...document.querySelectorAll('td.cell.pass,td.cell.fail,td.cell.warn,td.cell.open')]
      .filter(e => !e.textContent || !e.ariaLabel).length""")
    expect(colourful == 0, f"{colourful} verdicts are told by colour alone")


def check_policy():
    """The hashes that the page's policy names are its styles' and scripts' own."""
    for digest in looks.unnamed(path("sound")):
        expect(False, f"a style or script of fleet/page has another hash: {digest}")


CHECKS = (check_size_and_time, check_verdicts, check_rows, check_questions, check_address_at_the_start, check_details,
          check_controls, check_pages_of_tests, check_nothing_foreign, check_hostile_texts,
          check_without_script, check_layout, check_fits, check_rows_are_low, check_screenshots,
          check_contrast, check_names_for_all)


def main():
    check_policy()
    browser = Browser()
    try:
        for check in CHECKS:
            check(browser)
        expect(browser.complaints == [], f"the browser complains: {browser.complaints}")
    finally:
        browser.close()
    for fault in faults:
        print(fault[:2000])
    return 1 if faults else 0


sys.exit(main())
