"""Opens status pages made from the default template in headless Chromium and looks at what became of them.

Usage: page_in_browser.py status_page_sample. Exit code 77: no browser here.
"""
import json
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

# Stands before the page's own script: a speech API that writes down what it is told, and sound switched on.
RECORDER = """<script>
window.kavroLog = [];
Object.defineProperty(window, "speechSynthesis", { value: {
  speak(u) { kavroLog.push(u.text); setTimeout(() => u.onend && u.onend({}), 1); }, cancel() {} } });
window.SpeechSynthesisUtterance = function (text) { this.text = text; };
sessionStorage.setItem("kavro.sound", "1");
new MutationObserver((changes) => {
  const text = document.getElementById("balloon");
  if (text && text.textContent && kavroLog[kavroLog.length - 1] !== "shown " + text.textContent)
    kavroLog.push("shown " + text.textContent);
}).observe(document, { childList: true, subtree: true });
setInterval(() => document.documentElement.dataset.log = JSON.stringify(kavroLog), 50);
</script>
"""

HOSTILE = ("<script>document.title='hacked'</script>\"' --> XXX <!--PORTNAME--> </script> <img src=x"
           " onerror=document.title='hacked'> &lt;b&gt;")

failures = []


def check(what, holds):
    print(("ok      " if holds else "FAILED  ") + what)
    if not holds:
        failures.append(what)


def browse(browser, folder, page):
    """The page after its scripts have run, and what the console said."""
    result = subprocess.run(
        [browser, "--headless", "--no-sandbox", "--disable-gpu", "--disable-background-networking", "--no-first-run",
         "--user-data-dir=" + str(folder / "profile"), "--enable-logging=stderr", "--virtual-time-budget=60000",
         "--dump-dom", page.as_uri()], capture_output=True, text=True, timeout=60)
    console = [line for line in result.stderr.splitlines() if "CONSOLE" in line]
    return result.stdout, console


def validate(page):
    """tidy's complaints, where tidy is installed; empty elements are filled by the page's script."""
    if not shutil.which("tidy"):
        print("note    tidy is not installed, markup was not checked")
        return
    result = subprocess.run(["tidy", "-q", "-e", "--drop-empty-elements", "no", str(page)],
                            capture_output=True, text=True)
    check(f"{page.name} is valid {result.stderr.strip()[:300]}", result.returncode == 0)


def log_of(dom):
    match = re.search(r'data-log="([^"]*)"', dom)
    return json.loads(match.group(1).replace("&quot;", '"').replace("&lt;", "<").replace("&gt;", ">")
                      .replace("&amp;", "&")) if match else []


def without_scripts(dom):
    return re.sub(r"<script.*?</script>", "", dom, flags=re.S)


def main():
    browser = shutil.which("chromium") or shutil.which("chromium-browser") or shutil.which("google-chrome")
    if not browser:
        print("no Chromium on this machine: the page was not tried in a browser")
        return 77
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        subprocess.run([sys.argv[1], name], check=True)
        doms = {}
        for page in ("empty", "page", "hostile"):
            original = folder / (page + ".html")
            validate(original)
            recorded = folder / (page + "-recorded.html")
            recorded.write_text(original.read_text("utf-8").replace("<body>", "<body>" + RECORDER, 1), "utf-8")
            doms[page], console = browse(browser, folder, recorded)
            check(f"{page}: nothing on the console {console}", not console)
            check(f"{page}: loads nothing", not re.search(r'(?:src|href)="?(?:https?:)?//', doms[page]))
            check(f"{page}: title", re.search(r"<title>(\(\d+\) )?Kavro 2000 status</title>", doms[page]) is not None)
        check("empty: says so", "Nothing checked yet" in doms["empty"])
        check("page: problems first", "2 checks are failing" in doms["page"]
              and doms["page"].index("Shop front – 443") < doms["page"].index('<table id="checks"'))
        check("page: devices open and close their checks by id",
              re.search(r'aria-controls="ID\d+ ID\d+ ID\d+"[^>]*aria-expanded="true"', doms["page"]) is not None)
        said = [text for text in log_of(doms["page"]) if not text.startswith(("shown", "The date", "The time"))]
        check(f"page: agent lines in order {said}", said == [
            "There was a problem connecting to the following devices:", "web", "dot", "01",
            "port 443 because connection timed out.",
            "The following devices have recovered:", "Mail", "port 25."])
        check("page: the balloon shows the name as written",
              "shown web.01 port 443 because connection timed out." in log_of(doms["page"]))
        hostile = doms["hostile"]
        visible = HOSTILE.replace("&", "&amp;").replace("<", "&lt;").replace(">", "&gt;")
        check("hostile: the texts are shown as text", without_scripts(hostile).count(visible) >= 4)
        check("hostile: no element of theirs", "<img" not in without_scripts(hostile)
              and "hacked" not in re.findall(r"<title>(.*?)</title>", hostile)[0])
        check("hostile: the announcement goes on to its end",
              any("port 81 because" in text for text in log_of(hostile)))
    return 1 if failures else 0


sys.exit(main())
