#!/usr/bin/env python3
"""Makes the documentation as HTML that needs no network: the reference from the headers with
Doxygen, and the Markdown pages with cmark-gfm, which reads them as GitHub does.

usage: docs/build.py BUILD_FOLDER VERSION

The result is BUILD_FOLDER/html/index.html. Links between pages are written for GitHub; here they
are turned to the HTML files, and every heading gets the anchor that GitHub gives it. A linked file
of the repository that is no page is put beside the pages. A link to something that is not there
stays as it is, for check_links.py to find.
"""

import html
import os
import re
import shutil
import subprocess
import sys
import xml.etree.ElementTree as ElementTree
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
SITE = ROOT / "docs" / "site"

LAST_GROUP = "The project, in its sources"

# In reading order. Pages of docs/ that are not named here join the last group.
NAVIGATION = {
    "Begin": ["docs/index.md", "docs/getting-started.md", "docs/your-project.md", "docs/your-language.md",
              "docs/life-of-a-call.md", "docs/services.md", "package/SHIP.md",
              "bindings/python/README.md", "bindings/dotnet/README.md",
              "bindings/node/README.md"],
    "Look up": ["docs/result-codes.md", "docs/configuration.md", "docs/log-lines.md",
                "docs/troubleshooting.md", "docs/security.md", "docs/driver-upgrade.md"],
    "Write a service": ["docs/wire-protocol.md", "devservice/README.md"],
    "Tools": ["docs/kit.md", "docs/kit-host.md", "docs/kit-host-json.md", "docs/kit-doctor.md",
              "docs/kit-message.md", "docs/kit-trace.md", "docs/kit-scenario.md",
              "docs/kit-judge.md", "docs/kit-verify.md"],
    LAST_GROUP: ["README.md", "CHANGELOG.md", "CONTRIBUTING.md", "docs/building-on-windows.md",
                 "docs/first-time-on-windows.md",
                 "docs/performance.md", "docs/reliability.md", "docs/conformance.md",
                 "kit/host/README.md", "companion/README.md", "tests/both_worlds/README.md"],
}
REFERENCE = {
    "PLENXManager": "classDistributedFs_1_1PLENXManager.html",
    "PLENXServiceObserver": "classDistributedFs_1_1PLENXServiceObserver.html",
    "plenx_manager.h": "plenx__manager_8h.html",
    "plenx.h": "plenx_8h.html",
    "Companion: office service": "classDistributedFileManager.html",
    "Companion: logger": "classOvLogger.html",
}
SHORT_TITLES = {
    "docs/index.md": "Where to begin",
    "README.md": "About the project",
    "package/SHIP.md": "What to ship",
    "bindings/python/README.md": "Python",
    "bindings/dotnet/README.md": ".NET",
    "devservice/README.md": "The development service",
    "docs/kit-host-json.md": "plenxkit host --json",
    "kit/host/README.md": "plenxkit host, its sources",
    "companion/README.md": "Companion stand-ins",
    "tests/both_worlds/README.md": "One source, two worlds",
}

# Of Doxygen's files: lists that the navigation makes needless, and what belongs to its own design.
NEEDLESS = ["*.png", "*.js", "*.css", "doxygen.svg", "dir_*.html", "annotated.html", "classes.html",
            "files.html", "functions*.html", "globals*.html", "pages.html", "hierarchy.html",
            "namespaces.html", "namespacemembers*.html", "*-members.html", "*_source.html",
            "doxygen_crawl.html"]


def all_pages():
    named = sum(NAVIGATION.values(), [])
    found = [str(page.relative_to(ROOT)) for page in sorted((ROOT / "docs").glob("*.md"))]
    NAVIGATION[LAST_GROUP] += [page for page in found if page not in named]
    return [page for page in sum(NAVIGATION.values(), []) if (ROOT / page).exists()]


def html_name(page):
    """docs/security.md becomes security.html, kit/host/README.md becomes kit-host-readme.html."""
    return re.sub(r"[^a-z0-9]+", "-", page.lower().removeprefix("docs/")[:-3]) + ".html"


def title_of(page):
    heading = re.search(r"^# +(.*)$", (ROOT / page).read_text(encoding="utf-8"), re.MULTILINE)
    return heading[1].replace("`", "") if heading else page


def navigation(pages):
    def group(name, links):
        items = "\n".join(f'<li><a href="{target}">{html.escape(text)}</a></li>'
                          for text, target in links)
        return f"<div>\n<h2>{name}</h2>\n<ul>\n{items}\n</ul>\n</div>"

    groups = [(name, [(SHORT_TITLES.get(page) or re.split("[:,]", title_of(page))[0],
                       html_name(page)) for page in members if page in pages])
              for name, members in NAVIGATION.items()]
    groups.insert(2, ("Reference", list(REFERENCE.items())))
    return "\n".join(group(name, links) for name, links in groups if links)


def run_doxygen(build, version):
    environment = dict(os.environ, PLENX_DOCS=str(build), PLENX_VERSION=version)
    subprocess.run(["doxygen", SITE / "Doxyfile"], cwd=ROOT, env=environment, check=True)
    for pattern in NEEDLESS:
        for file in (build / "html").glob(pattern):
            file.unlink()
    api = api_links(build)
    for file in (build / "html").glob("*.html"):
        text = mend_reference(file.read_text(encoding="utf-8"), api)
        file.write_text(mark_as_here(file.name, text), encoding="utf-8")


# What is cut out of Doxygen's pages: above all what leads to the pages that were removed.
CUTS = [
    (r"</div><!-- top -->", ""),  # of a header that is not ours
    (r'<div class="summary">.*?</div>', ""),
    (r'<div id="nav-path".*?</ul>\s*</div>', ""),
    (r'<p><a href="\w+_source\.html">Go to the source code[^<]*</a></p>', ""),
    (r'(?:&#160;)?<a href="[^"]*#details">More\.\.\.</a>', ""),
    (r'<code>(#include &lt;)<a [^>]*>([^<]*)</a>', r"<code>\1\2"),
    (r'<a class="el" href="(?:dir_|\w+_source)[^>]*>(.*?)</a>', r"\1"),
    (r'<div class="title">(?:DistributedFs::)?([\w.]+).*?</div>', r"<h1>\1</h1>"),
    (r'<h2 class="groupheader">Detailed Description</h2>', ""),
    (r"<title>(?:plenxsdk: )?(?:DistributedFs::)?([\w.]+)[^<]*</title>",
     r"<title>\1 - plenxsdk</title>"),
]


def mend_reference(text, api):
    for pattern, replacement in CUTS:
        text = re.sub(pattern, replacement, text, flags=re.DOTALL)

    # Names like NotifyStatus, which Doxygen leaves alone, lead to where they are told about.
    def link(match):
        target = api.get(match[0])
        return f'<a class="el" href="{target}">{match[0]}</a>' if target else match[0]

    parts = re.split(r"(<p.*?</p>|<td>.*?</td>)", text, flags=re.DOTALL)
    for number in range(1, len(parts), 2):
        pieces = re.split(r"(<a .*?</a>|<code>.*?</code>|<[^>]*>)", parts[number], flags=re.DOTALL)
        pieces[::2] = [re.sub(r"\b(?:k|[A-Z])\w*[a-z][A-Z]\w*\b", link, piece)
                       for piece in pieces[::2]]
        parts[number] = "".join(pieces)
    return "".join(parts)


def mark_as_here(name, text):
    return text.replace(f'<li><a href="{name}">', f'<li class="here"><a href="{name}">', 1)


def api_links(build):
    """The names of the public header, and where the reference tells about them."""
    links = {}
    for compound in ElementTree.parse(build / "plenxsdk.tag").getroot().iter("compound"):
        owner = compound.findtext("name").split("::")[-1]
        if owner in ("PLENXManager", "PLENXServiceObserver"):
            links[owner] = compound.findtext("filename")
        elif owner != "plenx_manager.h":
            continue
        for member in compound.iter("member"):
            target = f"{member.findtext('anchorfile')}#{member.findtext('anchor')}"
            for name in (member.findtext("name"), f"{owner}::{member.findtext('name')}"):
                links.setdefault(name, target)
            for value in member.iter("enumvalue"):
                links.setdefault(value.text, f"{value.get('file')}#{value.get('anchor')}")
    return links


class Pages:
    def __init__(self, build, version):
        self.build = build
        self.out = build / "html"
        self.version = version
        self.pages = all_pages()
        self.api = {}

    def write_header(self):
        template = (SITE / "header.html").read_text(encoding="utf-8")
        (self.build / "header.html").write_text(
            template.replace("@NAVIGATION@", navigation(self.pages)), encoding="utf-8")

    def target(self, page, link):
        """Where a link of a page leads in the HTML."""
        link = html.unescape(link)
        if re.match(r"[a-z]+:|#", link):
            return link
        path, mark, fragment = link.partition("#")
        path = os.path.normpath(Path(page).parent / path)
        if path in self.pages:
            return html_name(path) + mark + fragment
        if re.match(r"(include|companion/include)/.*\.h$", path):
            return path.split("/")[-1].replace("_", "__").replace(".", "_8") + ".html"
        if (ROOT / path).is_file():
            name = path.split("/")[-1] if "/images/" in path else path.replace("/", "-")
            shutil.copy(ROOT / path, self.out / name)
            return name
        return link

    def code_span(self, match):
        """The name of an operation or a constant leads to the reference."""
        target = self.api.get(re.match(r"[\w:]*", match[1])[0])
        plain = re.fullmatch(r"[\w:]+(\(.*\))?", match[1])
        return f'<a class="api" href="{target}">{match[0]}</a>' if target and plain else match[0]

    def content(self, page):
        cmark = ["cmark-gfm", "--unsafe", "-e", "table", "-e", "strikethrough", "-e", "autolink"]
        text = subprocess.run([*cmark, ROOT / page], check=True, capture_output=True,
                              encoding="utf-8").stdout
        used = {}

        def heading(match):
            plain = html.unescape(re.sub(r"<[^>]*>", "", match[2]))
            anchor = re.sub(r"[^\w\- ]", "", plain.lower()).replace(" ", "-")
            count = used[anchor] = used.get(anchor, -1) + 1
            anchor += f"-{count}" if count else ""
            return f'<h{match[1]} id="{anchor}">{match[2]}</h{match[1]}>'

        text = re.sub(r"<h([1-6])>(.*?)</h\1>", heading, text, flags=re.DOTALL)
        text = re.sub(r'(<a href|<img src)="([^"]*)"',
                      lambda match: f'{match[1]}="{self.target(page, match[2])}"', text)
        links = re.split(r"(<a .*?</a>|<pre.*?</pre>|<h\d.*?</h\d>)", text, flags=re.DOTALL)
        links[::2] = [re.sub(r"<code>([^<]*)</code>", self.code_span, part)
                      for part in links[::2]]
        text = "".join(links)
        text = re.sub(r"<table>.*?</table>", r'<div class="table">\g<0></div>', text,
                      flags=re.DOTALL)
        text = re.sub(r"<p>(<img [^>]*>)</p>", r'<div class="figure" tabindex="0">\1</div>', text)
        return re.sub(r'<pre>|<pre lang="(\w+)">', '<pre tabindex="0">', text)

    def contents_list(self, text):
        """Of a long page; on top of it."""
        before = text.split("<h2", 1)[0]
        if '<li><a href="#' in before:
            return text  # it has its own
        headings = re.findall(r'<h2 id="([^"]*)">(.*?)</h2>', text, flags=re.DOTALL)
        if len(headings) < 4:
            return text
        items = "".join(f'<li><a href="#{anchor}">{re.sub("</?a[^>]*>", "", title)}</a></li>'
                        for anchor, title in headings)
        return text.replace("</h1>", f'</h1>\n<ul class="contents-list">{items}</ul>', 1)

    def write(self):
        self.api = api_links(self.build)
        top = (self.build / "header.html").read_text(encoding="utf-8")
        bottom = (SITE / "footer.html").read_text(encoding="utf-8")
        for page in self.pages:
            text = self.contents_list(self.content(page))
            shell = (top + '<article class="page">\n@CONTENT@</article>\n' + bottom)
            shell = shell.replace("$title", html.escape(title_of(page)))
            shell = shell.replace("$projectnumber", self.version).replace("$relpath^", "")
            shell = mark_as_here(html_name(page), shell)
            (self.out / html_name(page)).write_text(shell.replace("@CONTENT@", text),
                                                    encoding="utf-8")


def main():
    build, version = Path(sys.argv[1]).resolve(), sys.argv[2]
    shutil.rmtree(build / "html", ignore_errors=True)
    (build / "html").mkdir(parents=True)
    pages = Pages(build, version)
    pages.write_header()
    run_doxygen(build, version)
    shutil.copy(SITE / "style.css", build / "html")
    pages.write()
    print(f"docs: {len(pages.pages)} pages and the reference, in {build}/html")


if __name__ == "__main__":
    main()
