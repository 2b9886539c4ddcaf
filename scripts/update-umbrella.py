#!/usr/bin/env python3
"""Rewrites iModelStage/iModelStage.h so that it includes every public header.

Run after adding or removing a header; the test suite checks that the
umbrella header is complete.
"""
import pathlib

ROOT = pathlib.Path(__file__).resolve().parent.parent
LIB = ROOT / "iModelStage"
SUBSYSTEMS = ["frame", "model", "geometry", "viewing", "interaction", "snapping", "editing", "dimensioning",
              "reporting"]


def headers():
    for sub in SUBSYSTEMS:
        for h in sorted((LIB / sub).glob("*.h")):
            yield f"iModelStage/{sub}/{h.name}"


def main():
    lines = ["#ifndef IMODELSTAGE_IMODELSTAGE_H", "#define IMODELSTAGE_IMODELSTAGE_H", "",
             "// Every public header of the library.", ""]
    lines += [f"#include <{h}>" for h in headers()]
    lines += ["", "#endif", ""]
    (LIB / "iModelStage.h").write_text("\n".join(lines))


if __name__ == "__main__":
    main()
