"""What the pages need so that the same Markdown reads well on a code host and in the site."""

import os
import posixpath
import re
from pathlib import Path

from docutils import nodes
from sphinx import addnodes
from sphinx.util import logging

logger = logging.getLogger(__name__)

REPOSITORY = Path(os.environ["CORVANE_REPOSITORY"])
# Pages made of files that lie outside of docs/, and what stands for other files that pages link to.
PAGES = {
    "CHANGELOG.md": "changelog",
    "CONTRIBUTING.md": "contributing",
    "SECURITY.md": "reporting",
    "README.md": "index",
    "docs/index.md": "index",
    "examples": "examples",
    "examples/README.md": "examples",
}
ORIGINS = {page: posixpath.dirname(file) for file, page in PAGES.items() if page != "index" and page != "examples"}
LANGUAGES = {".cpp": "cpp", ".h": "cpp", ".expected": "text"}


# Where a link leads, as a path in the repository.
def in_repository(docname, target):
    return posixpath.normpath(posixpath.join(ORIGINS.get(docname, "docs"), target))


def page_of(path, env):
    if path in PAGES or re.fullmatch(r"examples/\d\d_\w+\.cpp", path):
        return PAGES.get(path, "examples")
    name = re.sub(r"^docs/(.*)\.md$", r"\1", path)
    return name if name != path and name in env.found_docs else None


# Links between files are links between pages. A file that is no page is shown by its name alone, but has to be there.
def resolve_links(app, doctree):
    docname = app.env.docname
    show_files(doctree, docname)
    for link in list(doctree.findall(addnodes.pending_xref)):
        if link.get("reftype") != "myst" or link["reftarget"].startswith("#"):
            continue
        target, _, anchor = link["reftarget"].partition("#")
        path = in_repository(docname, target)
        page = page_of(path, app.env)
        if page is not None:
            back = "../" * docname.count("/")
            link["reftarget"] = back + page + ".md" + ("#" + anchor if anchor else "")
        else:
            if not (REPOSITORY / path).exists():
                logger.warning("there is no %s", path, location=link)
            link.replace_self(link.children)


# A paragraph that is only a link to a source or to its output becomes that file.
def show_files(doctree, docname):
    for paragraph in list(doctree.findall(nodes.paragraph)):
        links = [each for each in paragraph.children if not isinstance(each, nodes.Text)]
        is_alone = len(links) == 1 and links[0].astext() == paragraph.astext().strip()
        if not is_alone or not isinstance(links[0], addnodes.pending_xref):
            continue
        path = in_repository(docname, links[0]["reftarget"])
        language = LANGUAGES.get(posixpath.splitext(path)[1])
        if language is None or not (REPOSITORY / path).is_file():
            continue
        text = (REPOSITORY / path).read_text().rstrip("\n")
        block = nodes.literal_block(text, text, language=language)
        name = nodes.paragraph("", "", nodes.literal("", path), classes=["file-name"])
        paragraph.replace_self([block] if language == "text" else [name, block])


# Pictures stand in the page itself, so that they follow its colours, in a frame that scrolls on a narrow window.
def inline_pictures(app, doctree, docname):
    if app.builder.format != "html":
        return
    for image in list(doctree.findall(nodes.image)):
        uri = image["uri"]
        if not re.search(r"pictures/[^/]+\.svg$", uri):
            continue
        path = Path(app.srcdir) / uri
        if not path.is_file():
            continue  # Sphinx has complained
        svg = path.read_text()
        svg = re.sub(r"^.*?(?=<svg)", "", svg, flags=re.DOTALL)
        svg = re.sub(r"(?<=<style>\n)(.*)\n@media .*?dark\) \{ (.*) \}\n", follow_the_theme, svg)
        label = image.get("alt", "").replace("&", "&amp;").replace('"', "&quot;")
        svg = svg.replace("<svg ", f'<svg role="img" aria-label="{label}" ', 1)
        image.replace_self(nodes.raw("", f'<div class="picture" tabindex="0">{svg}</div>', format="html"))


# Light or dark is a matter of the reader's choice in the page, too, not of the system alone.
def follow_the_theme(colours):
    light, dark = colours.groups()
    chosen = 'body[data-theme="{}"] '
    return (
        f"{light}\n{chosen.format('dark')}{dark}\n"
        f"@media screen and (prefers-color-scheme: dark) {{ {chosen.format('auto')}{dark} }}\n"
        f"@media print {{ body {light} }}\n"
    )


# The first code span of a section that is just the name of a class, or of a member with its class, leads to its entry.
def link_names(app, doctree, docname):
    entries = {entry[0]: entry for entry in app.env.domains["cpp"].get_objects()}
    seen = set()
    for literal in list(doctree.findall(nodes.literal)):
        name = literal.astext().removesuffix("()")
        parents = ancestors(literal)
        key = (id(next((each for each in parents if isinstance(each, nodes.section)), None)), name)
        is_taken = any(isinstance(each, (nodes.reference, nodes.title, nodes.caption)) for each in parents)
        entry = entries.get(name)
        if is_taken or key in seen or entry is None or entry[2] not in ("class", "function", "enum", "enumerator"):
            continue
        if entry[2] == "function" and "::" not in name:
            continue
        seen.add(key)
        uri = app.builder.get_relative_uri(docname, entry[3]) + "#" + entry[4]
        literal.replace_self(nodes.reference("", "", literal.deepcopy(), internal=True, refuri=uri))


# A link that is written as the name of a file says the page's title.
def name_pages(app, doctree, docname):
    for link in list(doctree.findall(nodes.reference)):
        page = link.get("refuri", "").partition(".html")[0]
        title = app.env.titles.get(posixpath.normpath(posixpath.join(posixpath.dirname(docname), page)))
        if title is not None and re.fullmatch(r"[\w/.-]+\.md", link.astext()):
            link.children = []
            link += nodes.inline("", title.astext(), classes=["doc"])


def ancestors(node):
    result = []
    while node.parent is not None:
        node = node.parent
        result.append(node)
    return result


def setup(app):
    app.connect("doctree-read", resolve_links)
    app.connect("doctree-resolved", inline_pictures)
    app.connect("doctree-resolved", link_names)
    app.connect("doctree-resolved", name_pages)
    return {"parallel_read_safe": True, "parallel_write_safe": True}
