#!/usr/bin/env python3
"""Turns the JSON of bench_compare and the memory figures into the one table scripts/bench prints.

    bench/table.py RESULTS.json MEMORY.tsv

MEMORY.tsv has lines "group engine elements bytes".
"""
import json
import sys

PHASES = ['load', 'draw1', 'draw2', 'hit', 'save']
COMPARED = ['load', 'draw1', 'draw2']


def ratio(a, b):
    return '%.2f' % (a / b) if a is not None and b else '-'


def ms(value):
    if value is None:
        return '-'
    return '%.2f' % value if value < 100 else '%.0f' % value


def main():
    results, memory_file = sys.argv[1], sys.argv[2]
    times, loaded, groups = {}, {}, []
    for bench in json.load(open(results))['benchmarks']:
        engine, group, phase = bench['name'].split('/')[:3]
        if group not in groups:
            groups.append(group)
        factor = {'ns': 1e-6, 'us': 1e-3, 'ms': 1.0, 's': 1e3}[bench.get('time_unit', 'ns')]
        times[engine, group, phase] = bench['real_time'] * factor
        if phase == 'load':
            loaded[engine, group] = (int(bench.get('loaded', 0)), int(bench.get('pictures', 0)))
    memory = {}
    for line in open(memory_file):
        group, engine, elements, size = line.split()
        memory[group, engine] = int(size) / max(int(elements), 1)

    head = ['group', 'pictures vx/qt']
    for phase in COMPARED:
        head += [phase + ' vx ms', 'qt ms', 'ratio']
    head += ['hit vx ms', 'save vx ms', 'B/elem vx', 'B/elem qt']
    rows = []
    totals = {}
    for group in groups:
        vx_loaded, pictures = loaded.get(('vxsvg', group), (0, 0))
        qt_loaded = loaded.get(('qtsvg', group), (0, 0))[0]
        row = [group, '%d/%d of %d' % (vx_loaded, qt_loaded, pictures)]
        for phase in COMPARED:
            a, b = times.get(('vxsvg', group, phase)), times.get(('qtsvg', group, phase))
            row += [ms(a), ms(b), ratio(a, b)]
            for engine, value in (('vxsvg', a), ('qtsvg', b)):
                totals[engine, phase] = totals.get((engine, phase), 0) + (value or 0)
        for phase in ('hit', 'save'):
            value = times.get(('vxsvg', group, phase))
            row.append(ms(value))
            totals['vxsvg', phase] = totals.get(('vxsvg', phase), 0) + (value or 0)
        for engine in ('vxsvg', 'qtsvg'):
            value = memory.get((group, engine))
            row.append('%.0f' % value if value is not None else '-')
        rows.append(row)
    total = ['total', '']
    for phase in COMPARED:
        a, b = totals.get(('vxsvg', phase)), totals.get(('qtsvg', phase))
        total += [ms(a), ms(b), ratio(a, b)]
    total += [ms(totals.get(('vxsvg', 'hit'))), ms(totals.get(('vxsvg', 'save'))), '', '']
    rows.append(total)
    render_vx = totals.get(('vxsvg', 'draw1'), 0) + totals.get(('vxsvg', 'draw2'), 0)
    render_qt = totals.get(('qtsvg', 'draw1'), 0) + totals.get(('qtsvg', 'draw2'), 0)

    widths = [max(len(str(r[i])) for r in [head] + rows) for i in range(len(head))]
    line = lambda r: '| ' + ' | '.join(str(c).rjust(w) if i else str(c).ljust(w)
                                         for i, (c, w) in enumerate(zip(r, widths))) + ' |'
    print(line(head))
    print('|' + '|'.join('-' * (w + 2) for w in widths) + '|')
    for r in rows:
        print(line(r))
    print('total render ratio vxsvg/QtSvg (draw1 + draw2): %s' % ratio(render_vx, render_qt))


if __name__ == '__main__':
    main()
