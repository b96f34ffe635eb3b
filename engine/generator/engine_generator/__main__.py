"""python3 -m engine_generator --facts DIR --abi 104|108 --out DIR"""

import argparse
from pathlib import Path

from . import emit_c, emit_cxx, emit_neutral, facts as facts_module
from .emit_glue import GlueEmitter

# The glue is cut into this many sources so that they compile side by side.
GLUE_PARTS = 6


def files(facts):
    """All generated files by their path below the output folder."""
    glue = GlueEmitter(facts)
    found = {f"include/include/{name}": text for name, text in emit_cxx.headers(facts).items()}
    found["include/include/internal/cef_types.h"] = emit_c.types_header(facts)
    found["include/include/internal/cef_record_classes.h"] = emit_cxx.record_classes(facts)
    found["include/include/capi/cef_structs.h"] = emit_c.structs_header(facts)
    found["include/include/capi/cef_functions.h"] = emit_c.functions_header(facts)
    found["include/include/cef_version.h"] = emit_c.version_header(facts)
    found["src/layout_assertions.c"] = emit_c.layout_assertions(facts)
    found["src/glue_conversions.h"] = glue.conversions_header()
    found["src/glue_scoped.h"] = glue.scoped_header()
    found["src/neutral_classes.h"] = emit_neutral.neutral_classes(facts)
    found["src/functions.cpp"] = glue.functions_source()
    found["src/library.cpp"] = glue.library_source()
    interfaces = list(facts.interfaces.values())
    for part in range(GLUE_PARTS):
        found[f"src/glue_{part}.cpp"] = glue.glue_source(interfaces[part::GLUE_PARTS])
    return found


def main() -> None:
    parser = argparse.ArgumentParser(prog="engine_generator", description=__doc__)
    parser.add_argument("--facts", type=Path, required=True, help="the folder engine/interface")
    parser.add_argument("--abi", required=True, choices=("104", "108"), help="the interface version")
    parser.add_argument("--out", type=Path, required=True, help="where the files go")
    arguments = parser.parse_args()
    for name, text in files(facts_module.load(arguments.facts, arguments.abi)).items():
        path = arguments.out / name
        path.parent.mkdir(parents=True, exist_ok=True)
        # An unchanged file keeps its time, so that nothing below it is built again.
        if not path.exists() or path.read_text(encoding="utf-8") != text:
            path.write_text(text, encoding="utf-8")


if __name__ == "__main__":
    main()
