# SPDX-License-Identifier: MIT
"""Run by GDB's Python with a client loaded: the fields that kelutil.natvis names are those of the
classes. `natvis` is set to the file's path beforehand."""
import re
import xml.etree.ElementTree as xml

import gdb

NOT_FIELDS = {"unsigned", "long", "i", "word", "low", "value"}

for view in xml.parse(natvis).getroot():
    expressions = []
    for part in view.iter():
        tag = part.tag.split("}")[1]
        expressions += [part.get("Condition", ""), part.get("Expression", "")]
        if tag == "DisplayString":
            expressions += re.findall(r"{([^}]*)}", part.text)
        elif tag in ("Item", "Size", "ValueNode"):
            expressions.append(part.text)
    # Without what stands behind a comma, a point or a dollar sign: formats, and others' names.
    names = set(re.findall(r"(?<![\w.$])[A-Za-z_]\w*", " ".join(
        expression.split(",")[0] for expression in expressions))) - NOT_FIELDS
    fields = {field.name for field in gdb.lookup_type(view.get("Name")).fields()}
    print("natvis: %s: %s" % (view.get("Name"), ", ".join(sorted(names - fields)) or "as declared"))
