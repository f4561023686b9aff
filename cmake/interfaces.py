#!/usr/bin/env python3
"""interfaces.py DESCRIPTION.idl OUTPUT.cpp: writes what lets the objects of a server answer the dual interfaces of a type
library: each call of a member is made a call by its dispatch id. For each interface there is a com::Interface of its name
in the namespace type_library. What a description may hold is what common/com/dual.h can carry; anything else ends this
with a message."""
import re
import sys
from pathlib import Path

INTERFACE = re.compile(r"\[object, uuid\(([0-9a-f-]{36})\), dual, oleautomation\]\s*interface (\w+) : (\w+)\s*\{(.*?)\n\s*\}",
                       re.DOTALL)
NAMES = {"long": "LONG"}


def members(body):
    statements = [" ".join(s.split()) for s in body.split(";") if s.strip()]
    for statement in statements:
        found = re.fullmatch(r"\[id\((-?\d+)\)(?:, (propget|propput))?\] HRESULT (\w+)\((.*)\)", statement)
        if not found:
            sys.exit(f"This is no member: {statement}")
        dispid, kind, name, inside = found.groups()
        parameters = []
        for text in re.split(r", (?=\[)", inside) if inside else []:
            parameter = re.fullmatch(r"\[([a-z, ]+)\] (\w+)(\**) (\w+)", text)
            if not parameter:
                sys.exit(f"This is no parameter: {text}")
            attributes, kind_of, stars, named = parameter.groups()
            parameters.append((NAMES.get(kind_of, kind_of) + stars, named, "retval" in attributes))
        yield int(dispid), kind, name, parameters


def method(dispid, kind, name, parameters):
    prefix, flag = {"propget": ("get_", "DISPATCH_PROPERTYGET"), "propput": ("put_", "DISPATCH_PROPERTYPUT"),
                    None: ("", "DISPATCH_METHOD")}[kind]
    declared = ", ".join(f"{kind_of} {named}" for kind_of, named, _ in parameters)
    result = [named for _, named, is_result in parameters if is_result]
    given = [named for _, named, is_result in parameters if not is_result]
    call = "answer" if result else "call"
    arguments = ", ".join([str(dispid), flag] + result + given)
    return (f"    HRESULT STDMETHODCALLTYPE {prefix}{name}({declared}) override {{\n"
            f"        return {call}({arguments});\n    }}\n")


def guid(text):
    a, b, c, d, e = text.split("-")
    rest = ", ".join("0x" + (d + e)[i:i + 2] for i in range(0, 16, 2))
    return f"{{0x{a}, 0x{b}, 0x{c}, {{{rest}}}}}"


def main(description, output):
    text = re.sub(r"//[^\n]*", "", Path(description).read_text(encoding="utf-8"))
    found = {name: (uuid, base, list(members(body))) for uuid, name, base, body in INTERFACE.findall(text)}
    lines = ["// Made of the description of the type library.", f'#include "{Path(description).stem}.h"', "",
             '#include "common/com/dual.h"', "", "namespace {", ""]
    for name, (_, base, own) in found.items():
        chain, ids = [own], [name]
        while base != "IDispatch":
            ids.append(base)
            chain.append(found[base][2])
            base = found[base][1]
        lines.append(f"class {name}Dual final : public murmelix::com::Dual<{name}> {{\n  public:\n    using Dual::Dual;\n")
        lines += [method(*member) for inherited in reversed(chain) for member in inherited]
        lines += ["};", "", f"constexpr IID {name}_ids[] = {{"]
        lines += [f"    {guid(found[answered][0])}," for answered in ids]
        lines += ["};", ""]
    lines += ["} // namespace", "", "namespace type_library {", ""]
    lines += [f"extern const murmelix::com::Interface {name};\n"
              f"const murmelix::com::Interface {name}{{{name}_ids, &murmelix::com::makeDual<{name}Dual>}};"
              for name in found]
    lines += ["", "} // namespace type_library"]
    Path(output).write_text("\n".join(lines) + "\n", encoding="utf-8")


main(*sys.argv[1:])
