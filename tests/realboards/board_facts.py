"""Writes what KiCad itself says a board holds, for the ODB++ import tests to compare
with: board_facts.py BOARD.kicad_pcb OUT.tsv. Run it with the Python that has
KiCad's module (/usr/bin/python3). One line per footprint and per net, tab-separated:
  F  reference  side (T/B)  x mm  y mm  rotation degrees  pad count
  N  net name   pins, each reference-pad, sorted
Pads without a number (mechanical holes) and pads on no net are left out of the net
lines; footprints without a reference or without pads (logos, which KiCad's ODB++
writer leaves out of the component lists) are left out altogether."""
import os
import sys

import pcbnew


def main(board_path, out_path):
    board = pcbnew.LoadBoard(board_path)
    lines = []
    nets = {}
    for fp in board.GetFootprints():
        ref = fp.GetReference()
        pads = list(fp.Pads())
        if not ref or not pads:
            continue
        pos = fp.GetPosition()
        side = "B" if fp.GetLayer() == pcbnew.B_Cu else "T"
        lines.append("F\t%s\t%s\t%.6f\t%.6f\t%.6f\t%d" % (ref, side, pcbnew.ToMM(pos.x), pcbnew.ToMM(pos.y),
                                                        fp.GetOrientationDegrees(), len(pads)))
        for pad in pads:
            if pad.GetNumber() and pad.GetNetname():
                nets.setdefault(pad.GetNetname(), set()).add("%s-%s" % (ref, pad.GetNumber()))
    for name in sorted(nets):
        lines.append("N\t%s\t%s" % (name, "\t".join(sorted(nets[name]))))
    with open(out_path + ".part", "w", encoding="utf-8") as out:
        out.write("\n".join(lines) + "\n")
    os.replace(out_path + ".part", out_path)


if __name__ == "__main__":
    main(sys.argv[1], sys.argv[2])
