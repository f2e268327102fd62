"""The reference, from Doxygen's XML: the directive `api` writes out a class, or what a header declares outside classes.

Not breathe: it writes a comment that an overload set shares once for each overload, tears groups out of the order of
the header, and cannot name constants of unnamed enums. Here members that share a comment are one entry, in order.
"""

import os
import xml.etree.ElementTree as ElementTree
from pathlib import Path

from docutils import nodes
from docutils.parsers.rst import Directive
from docutils.statemachine import StringList
from sphinx import addnodes
from sphinx.domains.cpp import CPPDomain
from sphinx.util import logging
from sphinx.util.nodes import nested_parse_with_titles

logger = logging.getLogger(__name__)

CLASSES = {}  # name -> its XML
HEADERS = {}  # path -> XML of the members outside of classes
TEXTS = {}  # identifier of Doxygen's -> XML of what has a description
WRITTEN = set()  # names and paths that have got their entry


def load():
    folder = Path(os.environ["CORVANE_DOXYGEN_XML"])
    for compound in ElementTree.parse(folder / "index.xml").getroot():
        if compound.get("kind") not in ("class", "struct", "union", "namespace", "file"):
            continue
        definition = ElementTree.parse(folder / (compound.get("refid") + ".xml")).getroot().find("compounddef")
        if definition.get("kind") in ("namespace", "file"):
            for member in definition.iter("memberdef"):
                if member.get("kind") == "define":
                    continue
                HEADERS.setdefault(member.find("location").get("file"), []).append(member)
        elif definition.get("prot") == "public" and "<" not in definition.findtext("compoundname"):
            CLASSES[definition.findtext("compoundname")] = definition
            TEXTS[definition.get("id")] = definition
        for member in definition.iter("memberdef"):
            TEXTS[member.get("id")] = member


def text_of(element):
    return "" if element is None else " ".join("".join(element.itertext()).split())


# Members in the order of the header, those that share a comment together. Doxygen lists a member twice when a base's
# overloads are brought in by a using-declaration.
def entries(members):
    sets, seen = [], set()
    for member in sorted(members, key=lambda each: int(each.find("location").get("line"))):
        identity = (member.findtext("name"), text_of(member.find("argsstring")), template_of(member))
        if member.get("kind") == "function" and identity in seen:
            continue
        seen.add(identity)
        comment = description_text(member)
        if not comment and member.findtext("name").startswith("~"):
            continue  # as there is nothing to say of it
        shares = sets and comment and comment == description_text(sets[-1][0]) and member.get("kind") == "function"
        if shares and sets[-1][0].get("kind") == "function":
            sets[-1].append(member)
        else:
            sets.append([member])
    return sets


def description_text(element):
    return text_of(element.find("briefdescription")) + text_of(element.find("detaileddescription"))


def template_of(element):
    parameters = element.find("templateparamlist")
    if parameters is None:
        return ""
    texts = []
    for parameter in parameters:
        text = text_of(parameter.find("type"))
        name, value = text_of(parameter.find("declname")), text_of(parameter.find("defval"))
        texts.append(text + (" " + name if name else "") + (" = " + value if value else ""))
    return "template <" + ", ".join(texts) + "> "


def scope_of(member, is_free):
    # "int corvane::Number::size" gives "corvane::" for what stands outside of a class.
    qualified = text_of(member.find("qualifiedname")) or member.findtext("name")
    return qualified[: len(qualified) - len(member.findtext("name"))] if is_free else ""


def function_signature(member, is_free):
    arguments = text_of(member.find("argsstring"))
    for ending in (" override", " final"):
        arguments = arguments.replace(ending, "")
    arguments = arguments.replace("=delete", " = delete").replace("=default", "").replace("=0", " = 0")
    words = [template_of(member).strip()]
    words += [word for word in ("explicit", "static") if member.get(word) == "yes"]
    if member.get("virt") != "non-virtual":
        words.append("virtual")
    words += [text_of(member.find("type")), scope_of(member, is_free) + member.findtext("name") + arguments]
    return " ".join(word for word in words if word)


def indented(lines, by="   "):
    return [by + line if line else "" for line in lines]


def directive(kind, signatures, content):
    first = f".. cpp:{kind}:: "
    lines = [(first if number == 0 else " " * len(first)) + each for number, each in enumerate(signatures)]
    return lines + [""] + indented(content) + [""]


# Doxygen does not ask for the comments of what a header declares outside of classes. Values of an enum may do without.
def description(elements):
    where = elements[0].find("location")
    if where is not None and not description_text(elements[0]):
        name = elements[0].findtext("name") or elements[0].findtext("compoundname")
        logger.warning("%s is not documented", name, location=f"{where.get('file')}:{where.get('line')}")
    return [".. api-text:: " + " ".join(each.get("id") for each in elements), ""]


def enum_lines(member, is_free):
    scope = scope_of(member, is_free)
    is_named = bool(member.findtext("name")) and not member.findtext("name").startswith("@")
    values = []
    for value in member.findall("enumvalue"):
        TEXTS[value.get("id")] = value
        name = value.findtext("name")
        if not is_named:  # a constant of the scope around the enum
            name = scope_of(member, is_free).replace("@", "") + name if not is_free else namespace_of(member) + name
        signature = (name + " " + text_of(value.find("initializer"))).strip()
        values += directive("enumerator", [signature], description([value]))
    if not is_named:
        return description([member]) + values
    kind = "enum-class" if member.get("strong") == "yes" else "enum"
    return directive(kind, [scope + member.findtext("name")], description([member]) + values)


def namespace_of(member):
    parts = text_of(member.find("qualifiedname")).split("::")[:-1]
    return "".join(part + "::" for part in parts)


def entry_lines(members, is_free):
    member = members[0]
    kind, name = member.get("kind"), member.findtext("name")
    if kind == "enum":
        return enum_lines(member, is_free)
    if kind == "function":
        return directive("function", [function_signature(each, is_free) for each in members], description(members))
    if kind == "typedef":
        signature = template_of(member) + scope_of(member, is_free) + name + " = " + text_of(member.find("type"))
        return directive("type", [signature], description(members))
    signature = " ".join((text_of(member.find("type")), scope_of(member, is_free) + name))
    signature += text_of(member.find("argsstring"))
    return directive("member", [template_of(member) + signature], description(members))


def class_lines(name):
    definition = CLASSES[name]
    header = definition.find("location").get("file")
    bases = [
        " ".join(filter(None, (base.get("prot"), "virtual" if base.get("virt") == "virtual" else "", text_of(base))))
        for base in definition.findall("basecompoundref")
    ]
    signature = template_of(definition) + name + (" : " + ", ".join(bases) if bases else "")
    members = [each for each in definition.iter("memberdef") if each.get("kind") != "friend"]
    content = description([definition])
    for protection, heading in (("public", ""), ("protected", "For derived classes")):
        chosen = [each for each in members if each.get("prot") == protection]
        if chosen and heading:
            content += [f".. rubric:: {heading}", ""]
        for each in entries(chosen):
            content += entry_lines(each, False)
    title = name.split("< ")[0]
    kind = "struct" if definition.get("kind") == "struct" else "class"
    include = [f"``#include <{header}>``", ""]
    heading = [title, "-" * len(title), "", ".. rst-class:: api-header", ""]
    return heading + include + directive(kind, [signature], content)


def header_lines(path):
    lines = []
    for each in entries(HEADERS[path]):
        lines += entry_lines(each, True)
    return [".. rst-class:: api-header", "", f"``#include <{path}>``", ""] + lines


class Api(Directive):
    """`.. api:: ASSession` is the class; `.. api:: corvane/data/literal.h` what the header declares outside of any."""

    required_arguments = 1
    final_argument_whitespace = True

    def run(self):
        name = self.arguments[0]
        if name not in CLASSES and name not in HEADERS:
            return [self.state.document.reporter.warning(f"api: there is no {name}", line=self.lineno)]
        if name in WRITTEN:
            return [self.state.document.reporter.warning(f"api: {name} is written twice", line=self.lineno)]
        WRITTEN.add(name)
        lines = class_lines(name) if name in CLASSES else header_lines(name)
        source = self.state_machine.get_source_and_line(self.lineno)[0]
        holder = nodes.container()
        nested_parse_with_titles(self.state, StringList(lines, source=source), holder)
        return holder.children


class ApiText(Directive):
    """The description of a member, as the comment in the header has it; of the first one of those that share it."""

    required_arguments = 1
    final_argument_whitespace = True

    def run(self):
        identifiers = self.arguments[0].split()
        target = nodes.target("", "", ids=[f"api-{each}" for each in identifiers], names=[])
        for each in identifiers:
            self.state.document.settings.env.domaindata["std"]["anonlabels"][f"api-{each}"] = (
                self.state.document.settings.env.docname,
                f"api-{each}",
            )
        content = [target]
        for part in ("briefdescription", "detaileddescription"):
            element = TEXTS[identifiers[0]].find(part)
            if element is not None:
                content += blocks(element, self.state.document.settings.env.docname)
        return content


BLOCKS = ("itemizedlist", "orderedlist", "verbatim", "programlisting", "table", "simplesect", "parameterlist")
STYLES = {"bold": nodes.strong, "emphasis": nodes.emphasis, "computeroutput": nodes.literal}


# What stands in a description, a list item or a cell.
def blocks(element, docname):
    result = []
    for para in element:
        if para.tag not in ("para", "sect1", "sect2"):
            logger.warning("reference: no way to write <%s>", para.tag)
        paragraph = nodes.paragraph()
        paragraph += inlines(para.text or "")
        for child in para:
            if child.tag in BLOCKS:
                if paragraph.astext().strip():
                    result.append(paragraph)
                result += block(child, docname)
                paragraph = nodes.paragraph()
            else:
                paragraph += inline(child, docname)
            paragraph += inlines(child.tail or "")
        if paragraph.astext().strip():
            result.append(paragraph)
    return result


def inlines(text):
    return [nodes.Text(text)] if text else []


def inline(element, docname):
    if element.tag == "ref":
        return reference(element, docname)
    if element.tag in STYLES:
        style = STYLES[element.tag]("", "")
        style += inlines(element.text or "")
        for child in element:
            style += inline(child, docname) + inlines(child.tail or "")
        return [style]
    if element.tag == "ulink":
        return [nodes.reference("", element.text or "", refuri=element.get("url"))]
    if element.tag in ("ndash", "mdash", "nonbreakablespace", "linebreak", "zwj"):
        return [nodes.Text({"ndash": "--", "mdash": "---", "linebreak": " ", "zwj": ""}.get(element.tag, "\u00a0"))]
    logger.warning("reference: no way to write <%s>", element.tag)
    return [nodes.Text(text_of(element))]


def reference(element, docname):
    identifier = element.get("refid")
    if identifier not in TEXTS:
        return [nodes.Text(text_of(element))]
    link = addnodes.pending_xref(
        "", refdomain="std", reftype="ref", reftarget=f"api-{identifier}", refdoc=docname, refexplicit=True
    )
    return [with_child(link, nodes.inline("", text_of(element)))]


def with_child(parent, child):
    parent += child
    return parent


def block(element, docname):
    if element.tag in ("itemizedlist", "orderedlist"):
        items = nodes.bullet_list() if element.tag == "itemizedlist" else nodes.enumerated_list()
        for item in element:
            items += with_child(nodes.list_item(), blocks(item, docname))
        return [items]
    if element.tag == "verbatim":
        text = (element.text or "").strip("\n")
        return [nodes.literal_block(text, text, language="cpp" if ";" in text else "none")]
    if element.tag == "programlisting":
        text = "\n".join(code_line(line) for line in element.iter("codeline"))
        return [nodes.literal_block(text, text, language="cpp")]
    if element.tag == "table":
        return [table(element, docname)]
    if element.tag == "simplesect":
        return blocks(element, docname)
    logger.warning("reference: no way to write <%s>", element.tag)
    return []


def code_line(line):
    pieces = [line.text or ""]
    for each in line.iter():
        if each is not line:
            pieces.append(" " if each.tag == "sp" else each.text or "")
            pieces.append(each.tail or "")
    return "".join(pieces)


def table(element, docname):
    rows = element.findall("row")
    group = nodes.tgroup(cols=int(element.get("cols")))
    group += [nodes.colspec(colwidth=1) for _ in range(int(element.get("cols")))]
    head, body = nodes.thead(), nodes.tbody()
    for row in rows:
        cells = nodes.row()
        for entry in row:
            cells += with_child(nodes.entry(), blocks(entry, docname))
        is_head = row.find("entry").get("thead") == "yes"
        (head if is_head else body).append(cells)
    group += [each for each in (head, body) if each.children]
    return with_child(nodes.table(), group)


class CppDomain(CPPDomain):
    """C++ without the parameters of functions, which would fill the search."""

    def get_objects(self):
        return (entry for entry in super().get_objects() if not entry[2].endswith("Param"))


# No class and no free function may be missing.
def check_complete(app, env):
    for name in sorted((set(CLASSES) | set(HEADERS)) - WRITTEN):
        logger.warning("reference: %s is on no page", name)


def setup(app):
    load()
    app.add_domain(CppDomain, override=True)
    app.add_directive("api", Api)
    app.add_directive("api-text", ApiText)
    app.connect("env-check-consistency", check_complete)
    return {"parallel_read_safe": False}
