"""Draws what each release costs, for a light page and for a dark one."""
import math

STYLE = """
  text { font: 12px sans-serif; fill: #333 } .title { font-weight: bold }
  .axis { stroke: #999; fill: none } .bar { fill: #4a7ebb } .line { stroke: #4a7ebb; fill: none }
  .dot { fill: #4a7ebb } .old { opacity: .45 }
  @media (prefers-color-scheme: dark) {
    text { fill: #ddd } .axis { stroke: #777 } .bar, .dot { fill: #8ab4f0 }
    .line { stroke: #8ab4f0 }
  }
"""
SIZES = (10, 100, 1000)
BARS = (("text", "Text of the shared library, KiB", 1 / 1024),
        ("instructions", "Instructions of a first card", 1),
        ("allocations", "Allocations of a first card", 1))


def text(x, y, words, attributes=""):
    return f'<text x="{x:.0f}" y="{y:.0f}" {attributes}>{words}</text>'


def line(kind, *points):
    path = " ".join(f"{x:.0f},{y:.0f}" for x, y in points)
    return f'<polyline class="{kind}" points="{path}"/>'


def curves(releases, left, top, width, height):
    """Final step against size; both axes in powers of ten, a tenth of a microsecond at the foot."""
    def at(size, microseconds):
        return (left + width * (math.log10(size) - 1) / 2,
                top + height * (1 - (math.log10(microseconds) + 1) / 6))

    yield text(left, top - 14, "Final step of a synchronisation", 'class="title"')
    for power in range(-1, 6):
        y = at(10, 10 ** power)[1]
        yield line("axis", (left - 4, y), (left, y))
        yield text(left - 8, y + 4, f"{10 ** power:g} µs" if power < 3 else
                   f"{10 ** (power - 3)} ms", 'text-anchor="end"')
    yield line("axis", (left, top), (left, top + height), (left + width, top + height))
    for size in SIZES:
        yield text(at(size, 1)[0], top + height + 18, size, 'text-anchor="middle"')
    yield text(left + width / 2, top + height + 36, "instruments, and as many cards",
               'text-anchor="middle"')
    for position, (version, costs) in enumerate(releases.items()):
        old = "" if position == len(releases) - 1 else " old"
        points = [at(size, costs[f"final-{size}"]) for size in SIZES]
        yield line("line" + old, *points)
        yield from (f'<circle class="dot{old}" cx="{x:.0f}" cy="{y:.0f}" r="3"/>'
                    for x, y in points)
        yield text(points[-1][0] + 8, points[-1][1] + 4, version)


def bars(releases, column, title, factor, left, top, width):
    """One bar a release, from nothing, with its figure at the end."""
    most = max(costs[column] for costs in releases.values())
    yield text(left, top, title, 'class="title"')
    for position, (version, costs) in enumerate(releases.items()):
        y = top + 22 + 18 * position
        length = width * costs[column] / most
        yield text(left, y, version)
        yield f'<rect class="bar" x="{left + 50}" y="{y - 11}" width="{length:.0f}" height="13"/>'
        yield text(left + 56 + length, y, f"{costs[column] * factor:,.0f}")


def drawn(releases):
    """`releases` maps each version, oldest first, to its figures by column."""
    step = 44 + 18 * len(releases)
    height = max(300, 30 + step * len(BARS))
    parts = [*curves(releases, 70, 40, 250, height - 100)]
    for position, (column, title, factor) in enumerate(BARS):
        parts += bars(releases, column, title, factor, 400, 26 + step * position, 220)
    return (f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 740 {height}" '
            f'width="740" height="{height}" role="img" aria-label="What each release costs">\n'
            f"<style>{STYLE}</style>\n" + "\n".join(parts) + "\n</svg>\n")
