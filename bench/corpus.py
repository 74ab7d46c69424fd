#!/usr/bin/env python3
"""Writes the generated stress pictures of the benchmark corpus into a folder.

    bench/corpus.py FOLDER

The pictures are made again on every run, the same each time, so they never need committing.
"""
import os
import random
import sys

HEADER = ('<svg xmlns="http://www.w3.org/2000/svg" xmlns:xlink="http://www.w3.org/1999/xlink" '
          'width="1000" height="1000" viewBox="0 0 1000 1000">\n')


def colour(rng):
    return '#%06x' % rng.randrange(0x1000000)


def shapes(rng, count=50000):
    """Small rectangles, circles and ellipses spread over the picture, with fills and strokes."""
    out = [HEADER]
    for i in range(count):
        x, y = rng.uniform(0, 990), rng.uniform(0, 990)
        kind = i % 3
        if kind == 0:
            out.append('<rect x="%.1f" y="%.1f" width="8" height="6" fill="%s"/>\n' % (x, y, colour(rng)))
        elif kind == 1:
            out.append('<circle cx="%.1f" cy="%.1f" r="4" fill="%s" stroke="#000" stroke-width="0.5"/>\n'
                       % (x, y, colour(rng)))
        else:
            out.append('<ellipse cx="%.1f" cy="%.1f" rx="5" ry="3" fill="%s" opacity="0.7"/>\n'
                       % (x, y, colour(rng)))
    out.append('</svg>\n')
    return ''.join(out)


def long_path(rng, segments=200000):
    """One filled and stroked path of short line, cubic and quadratic segments wandering over the
    picture like a coastline (paths whose segments all cross the picture measure only the rasteriser)."""
    out = [HEADER, '<path fill="#8ecae6" fill-rule="evenodd" stroke="#023047" stroke-width="0.3" d="M500 500']
    x, y = 500.0, 500.0
    for i in range(segments):
        dx, dy = rng.uniform(-4, 4) - (x - 500) / 2000, rng.uniform(-4, 4) - (y - 500) / 2000
        kind = i % 4
        if kind == 3:
            out.append(' c%.1f %.1f %.1f %.1f %.1f %.1f' % (dx / 3, -dy, dx, dy * 2, dx, dy))
        elif kind == 2:
            out.append(' q%.1f %.1f %.1f %.1f' % (dy, dx, dx, dy))
        else:
            out.append(' l%.1f %.1f' % (dx, dy))
        x, y = x + dx, y + dy
    out.append(' Z"/>\n</svg>\n')
    return ''.join(out)


def nesting(depth=250):
    """Groups inside groups, each with a transform, an opacity and a shape of its own."""
    out = [HEADER]
    for i in range(depth):
        out.append('<g transform="translate(1 1)" opacity="0.99" fill="hsl(%d, 60%%, 50%%)">'
                   '<rect width="%d" height="4"/>\n' % (i, 1000 - 3 * i))
    out.append('</g>' * depth)
    out.append('\n</svg>\n')
    return ''.join(out)


def gradients(rng, count=1000):
    """Linear and radial gradients, each filling one rectangle, half of them inheriting stops by href."""
    out = [HEADER, '<defs>\n']
    for i in range(count):
        if i % 2 == 0:
            out.append('<linearGradient id="g%d" x1="0" y1="0" x2="1" y2="%.2f">'
                       '<stop offset="0" stop-color="%s"/><stop offset="0.5" stop-color="%s"/>'
                       '<stop offset="1" stop-color="%s"/></linearGradient>\n'
                       % (i, rng.random(), colour(rng), colour(rng), colour(rng)))
        else:
            out.append('<radialGradient id="g%d" xlink:href="#g%d" cx="0.5" cy="0.5" r="0.6" '
                       'spreadMethod="%s"/>\n' % (i, i - 1, ('pad', 'reflect', 'repeat')[i % 3]))
    out.append('</defs>\n')
    for i in range(count):
        out.append('<rect x="%d" y="%d" width="31" height="31" fill="url(#g%d)"/>\n'
                   % (i % 32 * 31, i // 32 * 31, i))
    out.append('</svg>\n')
    return ''.join(out)


def text(rng, spans=5000):
    """Lines of text made of styled spans."""
    words = ['vector', 'graphics', 'scalable', 'picture', 'glyph', 'kerning', 'baseline', 'path']
    out = [HEADER, '<g font-family="DejaVu Sans" font-size="9">\n']
    per_line = 10
    for line in range(spans // per_line):
        out.append('<text x="4" y="%d">' % (10 + line * 2 % 990))
        for i in range(per_line):
            out.append('<tspan fill="%s" font-weight="%s">%s </tspan>'
                       % (colour(rng), ('normal', 'bold')[i % 2], rng.choice(words)))
        out.append('</text>\n')
    out.append('</g>\n</svg>\n')
    return ''.join(out)


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    folder = sys.argv[1]
    os.makedirs(folder, exist_ok=True)
    rng = random.Random(20240611)
    pictures = {
        'shapes-50000': shapes(rng),
        'path-200000': long_path(rng),
        'nesting-250': nesting(),
        'gradients-1000': gradients(rng),
        'text-5000': text(rng),
    }
    for name, content in pictures.items():
        with open(os.path.join(folder, name + '.svg'), 'w', encoding='utf-8') as f:
            f.write(content)


if __name__ == '__main__':
    main()
