"""What every page is held to."""

import base64
import hashlib
import re


def brightness(pixel):
    return sum(pixel[:3]) / 3 / 255


def is_reddish(pixel):
    return pixel[0] > pixel[1] + 8 and pixel[0] > pixel[2] + 8


def is_greenish(pixel):
    return pixel[1] > pixel[0] + 5


def unnamed(path):
    """Hashes of those styles and scripts of a page that its policy does not name."""
    with open(path, encoding="utf-8", newline="") as file:
        page = file.read()
    policy = re.search('http-equiv="Content-Security-Policy" content="([^"]*)"', page).group(1)
    inlays = re.findall("<(?:style|script)>(.*?)</(?:style|script)>", page, re.S)
    hashes = ["sha256-" + base64.b64encode(hashlib.sha256(text.encode()).digest()).decode()
              for text in inlays]
    return [digest for digest in hashes if f"'{digest}'" not in policy]


# Texts whose colour is too near to that of their ground for those who see badly.
CONTRAST = """(() => {
  const channel = c => { c /= 255; return c <= .03928 ? c / 12.92 : ((c + .055) / 1.055) ** 2.4; };
  const light = c => .2126 * channel(c[0]) + .7152 * channel(c[1]) + .0722 * channel(c[2]);
  const numbers = text => text.match(/[0-9.]+/g).map(Number);
  const ground = e => {
    for (; e; e = e.parentElement) {
      const c = numbers(getComputedStyle(e).backgroundColor);
      if (c.length === 3 || c[3] === 1) return c;
    }
    return [255, 255, 255];
  };
  const weak = new Set();
  for (const e of document.querySelectorAll('body *')) {
    if (![...e.childNodes].some(n => n.nodeType === 3 && n.textContent.trim())) continue;
    if (e.closest('svg')) continue;
    const a = light(numbers(getComputedStyle(e).color)), b = light(ground(e));
    const ratio = (Math.max(a, b) + .05) / (Math.min(a, b) + .05);
    if (ratio < 4.5) weak.add(e.tagName + '.' + e.className + ' ' + ratio.toFixed(2));
  }
  return [...weak];
})()"""
