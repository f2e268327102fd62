"""The documentation site. tools/build-docs puts the pages together and calls Sphinx."""

import os
import re
import sys
from pathlib import Path

REPOSITORY = Path(os.environ["CORVANE_REPOSITORY"])
sys.path.insert(0, str(REPOSITORY / "docs/site"))

project = "Corvane"
version = re.search(r"^project\(corvane VERSION ([\d.]+)", (REPOSITORY / "CMakeLists.txt").read_text(), re.M)[1]
release = version

extensions = ["myst_parser", "api", "corvane_site"]
myst_heading_anchors = 4
highlight_language = "none"
primary_domain = "cpp"
smartquotes = False

html_theme = "furo"
html_title = f"Corvane {version}"
html_static_path = [str(REPOSITORY / "docs/site/static")]
html_css_files = ["corvane.css"]
html_copy_source = False
html_use_index = False
html_show_sphinx = False
html_show_copyright = False
pygments_style = "friendly"
pygments_dark_style = "github-dark"
