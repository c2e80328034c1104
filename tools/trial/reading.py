"""Reads in real programs with the real one, and counts what the provider is asked. Called by tools/reading."""

import argparse
import difflib
import html
import http.server
import json
import os
import pathlib
import random
import re
import shutil
import signal
import subprocess
import tempfile
import threading
import time

HERE = pathlib.Path(__file__).parent
MARKUP = {"*": ("<em>", "</em>"), "`": ("<code>", "</code>")}
PATIENCE = 2.0  # seconds for a look-up to reach the provider


def plain(text):
    return re.sub(r"[*`\[\]]", "", text)


def words_of(text):
    return re.findall(r"[a-z0-9]+(?:'[a-z]+)?", text.replace("’", "'").lower())


class Article:
    def __init__(self):
        self.paragraphs = (HERE / "article.txt").read_text().strip().split("\n\n")
        text = plain("\n".join(self.paragraphs))
        self.sentences = [words_of(s) for p in text.split("\n") for s in re.split(r"(?<=[.!?]) ", p)]
        everything = [word for sentence in self.sentences for word in sentence]
        self.vocabulary = set(everything)
        # Only a word that stands once tells by itself which sentence it was marked in.
        self.targets = {w for w in everything if everything.count(w) == 1 and len(w) > 3}

    def sentence_of(self, word):
        return next(sentence for sentence in self.sentences if word in sentence)

    def html(self):
        def paragraph(text):
            text = html.escape(text, quote=False)
            for mark, (begin, end) in MARKUP.items():
                text = re.sub(re.escape(mark) + "([^" + mark + "]+)" + re.escape(mark), begin + r"\1" + end, text)
            return "<p>" + re.sub(r"\[([^\]]+)\]", r'<a href="#">\1</a>', text) + "</p>"

        body = "\n".join(paragraph(p) for p in self.paragraphs)
        return (
            '<!doctype html><meta charset="utf-8"><title>Harbour</title>'
            "<style>body{max-width:720px;margin:24px auto;font:18px/1.5 serif}</style>" + body
        )

    def write(self, folder):
        files = {}
        for kind, content in {"html": self.html(), "txt": plain("\n\n".join(self.paragraphs)) + "\n"}.items():
            files[kind] = folder / f"harbour.{kind}"
            files[kind].write_text(content)
        message = "From: Ann <ann@example.org>\nTo: you@example.org\nSubject: Harbour\nMIME-Version: 1.0\n"
        files["eml"] = folder / "harbour.eml"
        files["eml"].write_text(message + "Content-Type: text/html; charset=utf-8\n\n" + self.html())
        if shutil.which("soffice"):
            for source, kind in (("html", "odt"), ("odt", "pdf")):
                subprocess.run(
                    ["soffice", "--headless", "--writer", "--convert-to", kind, "--outdir", str(folder),
                     str(files.get(source, ""))],
                    stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=False, timeout=120)
                made = folder / f"harbour.{kind}"
                if made.exists():
                    files[kind] = made
        return files


class Provider(http.server.ThreadingHTTPServer):
    """Notes what it is asked, and answers at once."""

    def __init__(self):
        self.asked = []
        super().__init__(("127.0.0.1", 0), Provider.Handler)
        threading.Thread(target=self.serve_forever, daemon=True).start()

    class Handler(http.server.BaseHTTPRequestHandler):
        protocol_version = "HTTP/1.1"

        def do_POST(self):
            body = json.loads(self.rfile.read(int(self.headers["Content-Length"])))
            message = body["messages"][-1]["content"]
            marked, _, context = message.partition("\nSurrounding text: ")
            self.server.asked.append((marked.removeprefix("Selection: "), context))
            content = json.dumps({"headword": marked[11:40] or "x", "meaning_zh": "意思", "translation_zh": "译文"})
            reply = json.dumps({"choices": [{"message": {"content": content}}]}).encode()
            self.send_response(200)
            self.send_header("Content-Length", str(len(reply)))
            self.end_headers()
            self.wfile.write(reply)

        def log_message(self, *_):
            pass


def x(*arguments):
    return subprocess.run(["xdotool", *map(str, arguments)], capture_output=True, text=True, check=False).stdout.strip()


def move(px, py):
    """As by hand: setting the place alone is no motion of a device."""
    x("mousemove", int(px) - 1, int(py), "mousemove_relative", 1, 0)


def screen_words(folder, languages="eng"):
    """Where words stand on the screen: (text, x, y), read off a picture, whatever the program tells of itself."""
    picture = folder / "screen.png"
    subprocess.run(["import", "-window", "root", "-resize", "200%", str(picture)], check=True)
    table = subprocess.run(["tesseract", str(picture), "-", "-l", languages, "--psm", "11", "tsv"],
                           capture_output=True, text=True, check=True, env={**os.environ, "OMP_THREAD_LIMIT": "2"})
    for line in table.stdout.splitlines()[1:]:
        cells = line.split("\t")
        if len(cells) == 12 and float(cells[10]) >= 85:
            left, top, width, height = map(int, cells[6:10])
            yield cells[11], (left + width / 2) / 2, (top + height / 2) / 2


class Session:
    def __init__(self, program, folder):
        self.folder = folder
        self.provider = Provider()
        self.data = folder / "data"
        self.data.mkdir(mode=0o700)
        self.configure()
        self.program = program
        self.process = None

    def configure(self, **changes):
        settings = {"apiKey": "sk-1", "baseURL": f"http://127.0.0.1:{self.provider.server_port}",
                    "recallOnLookup": False, "excludedBundleIDs": [], "dwellLookup": False, "menuBarWord": False,
                    **changes}
        (self.data / "config.json").write_text(json.dumps(settings))

    def start(self):
        self.process = subprocess.Popen([self.program], env={**os.environ, "NIMBRELLE_DATA_DIR": str(self.data)},
                                        stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        time.sleep(2)

    def stop(self):
        self.process.send_signal(signal.SIGTERM)
        self.process.wait(10)

    def asked_after(self, act, patience=PATIENCE):
        before = len(self.provider.asked)
        act()
        end = time.monotonic() + patience
        while time.monotonic() < end:
            if len(self.provider.asked) > before:
                return self.provider.asked[-1]
            time.sleep(0.02)
        return None


class Reader:
    """A program to read in, on one document."""

    def __init__(self, name, command, close_by_click=False, first_key=None):
        self.name, self.command, self.close_by_click, self.first_key = name, command, close_by_click, first_key

    def open(self):
        self.process = subprocess.Popen(self.command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                                        start_new_session=True)

    def settle(self, folder, article, patience=60):
        end = time.monotonic() + patience
        while time.monotonic() < end:
            time.sleep(2)
            window = x("getactivewindow")
            if window:
                x("windowsize", window, 1000, 760)
                x("windowmove", window, 100, 0)
                if self.first_key:
                    x("key", self.first_key)
                time.sleep(1.5)
                if sum(w.lower() in article.targets for w, _, _ in screen_words(folder)) >= 10:
                    return True
        return False

    def close(self):
        os.killpg(self.process.pid, signal.SIGTERM)
        try:
            self.process.wait(10)
        except subprocess.TimeoutExpired:
            os.killpg(self.process.pid, signal.SIGKILL)
        time.sleep(1)


def is_whole(sentence, context):
    """The sentence stands in the context from its first to its last word, but for a misread letter or two."""
    matcher = difflib.SequenceMatcher(None, context, sentence, autojunk=False)
    matched = sum(block.size for block in matcher.get_matching_blocks())
    return matched >= 0.9 * len(sentence) and sentence[0] in context and sentence[-1] in context


def is_like(word, vocabulary):
    return word in vocabulary or bool(difflib.get_close_matches(word, vocabulary, 1, 0.75))


def read_in(session, reader, article, count, log):
    counts = dict.fromkeys(("marked", "arrived", "right", "held", "whole", "clean", "all"), 0)
    done, pages = set(), 0
    rng = random.Random(1)
    while counts["marked"] < count and pages < 12:
        places = [(re.sub(r"\W", "", w).lower(), px, py) for w, px, py in screen_words(session.folder)]
        places = [p for p in places if p[0] in article.targets and p[0] not in done and 60 < p[2] < 760]
        rng.shuffle(places)
        for word, px, py in places[: count - counts["marked"]]:
            done.add(word)
            counts["marked"] += 1
            x("mousemove", int(px), int(py))
            time.sleep(0.1)
            asked = session.asked_after(lambda: x("click", "--repeat", 2, "--delay", 60, 1))
            if asked:
                sentence, context = article.sentence_of(word), words_of(asked[1])
                facts = {"arrived": True, "right": words_of(asked[0]) == [word], "held": word in context,
                         "whole": is_whole(sentence, context),
                         # The first and the last word may be cut.
                         "clean": all(is_like(w, article.vocabulary) for w in context[1:-1] if len(w) > 2)}
                facts["all"] = facts["right"] and facts["held"] and facts["whole"] and facts["clean"]
                for fact, holds in facts.items():
                    counts[fact] += holds
                log.write(json.dumps({"program": reader.name, "word": word, **facts, "asked": asked}) + "\n")
            else:
                log.write(json.dumps({"program": reader.name, "word": word, "arrived": False}) + "\n")
            if reader.close_by_click:
                x("mousemove", 160, 400, "click", 1)  # beside the text; the window below would come up
            else:
                x("key", "Escape")
            time.sleep(0.35)
        x("mousemove", 640, 400, "click", 1)
        time.sleep(0.6)
        x("key", "Next")
        time.sleep(1.2)
        pages += 1
    return counts


def still_page():
    """Nothing here is English: Chinese, icons, pictures and a toolbar."""
    rng = random.Random(2)

    def icon():
        shapes = []
        for _ in range(rng.randint(1, 3)):
            a, b, c, d = (rng.randint(2, 22) for _ in range(4))
            shapes.append(rng.choice([
                f'<line x1="{a}" y1="{b}" x2="{c}" y2="{d}"/>', f'<circle cx="{a}" cy="{b}" r="{c / 3 + 1:.0f}"/>',
                f'<rect x="{a}" y="{b}" width="{c}" height="{d}" rx="2"/>', f'<path d="M{a} {b}q{c} {d} 4-9l7 2"/>']))
        return ('<svg width="24" height="24" viewBox="0 0 24 24" fill="none" stroke="#333" stroke-width="2">'
                + "".join(shapes) + "</svg>")

    icons = lambda count: '<div style="display:flex;flex-wrap:wrap;gap:10px">' + "".join(icon() for _ in range(count)) + "</div>"
    paragraphs = "".join(f"<p>{line}</p>" for line in (HERE / "chinese.txt").read_text().splitlines())
    picture = ('<div style="height:120px;background:linear-gradient(40deg,#e7c,#37a 30%,#fd8 55%,#264 80%),'
               'repeating-radial-gradient(circle at 30% 40%,#0003 0 4px,#fff3 4px 9px)"></div>')
    return ('<!doctype html><meta charset="utf-8"><title>港口</title><style>body{margin:14px;'
            'font:17px/1.6 "Noto Sans CJK SC",sans-serif}</style>' + icons(60) + paragraphs + picture + icons(40))


def rest_at(session, points, log, kind):
    asked = []
    for px, py, expected in points:
        move(1230, 790)
        time.sleep(0.15)
        found = session.asked_after(lambda: move(px, py), 1.6)
        log.write(json.dumps({"rest": kind, "at": [px, py], "expected": expected, "asked": found}) + "\n")
        asked.append((found, expected))
        if found:
            move(1230, 790)
            time.sleep(0.3)
    return asked


def rest(session, folder, article, count, log):
    """The pointer rests on what is no English, and on English words; the browser is only what shows them."""
    session.stop()
    session.configure(dwellLookup=True, dwellSeconds=0.3)
    session.start()
    page = folder / "still.html"
    page.write_text(still_page())
    rng = random.Random(3)
    browser = ["firefox-esr", "--profile", str(folder / "firefox"), "--no-remote"]
    still = Reader("still", [*browser, str(page)])
    still.open()
    time.sleep(12)
    x("windowsize", x("getactivewindow"), 1000, 760)
    x("windowmove", x("getactivewindow"), 100, 0)
    time.sleep(2)
    points = [(rng.randint(110, 1090), rng.randint(100, 740), None) for _ in range(count)]
    wrong = sum(found is not None for found, _ in rest_at(session, points, log, "still"))
    print(f"resting on Chinese, icons and pictures: {wrong} of {count} opened a card", flush=True)
    still.close()

    text = Reader("text", [*browser, str(folder / "harbour.html")])
    text.open()
    opened = right = 0
    if text.settle(folder, article):
        places = [(px, py, w) for w, px, py in screen_words(folder) if words_of(w)[:1] and len(words_of(w)) == 1
                  and words_of(w)[0] in article.vocabulary and 100 < py < 740]
        rng.shuffle(places)
        for found, expected in rest_at(session, places[:count], log, "text"):
            opened += found is not None
            right += found is not None and words_of(found[0]) == words_of(expected)
        print(f"resting on English words: {opened} of {len(places[:count])} opened a card, {right} the right one", flush=True)
    text.close()


def readers_for(files, folder):
    profile = folder / "firefox"
    profile.mkdir(exist_ok=True)
    (profile / "user.js").write_text(
        'user_pref("browser.aboutwelcome.enabled", false);\nuser_pref("browser.shell.checkDefaultBrowser", false);\n'
        'user_pref("datareporting.policy.dataSubmissionEnabled", false);\n'
        'user_pref("browser.startup.homepage_override.mstone", "ignore");\n')
    mail = folder / "thunderbird"
    mail.mkdir(exist_ok=True)
    (mail / "user.js").write_text('user_pref("mail.provider.suppress_dialog_on_startup", true);\n'
                                  'user_pref("mail.spotlight.firstRunDone", true);\n'
                                  'user_pref("mailnews.start_page_override.mstone", "ignore");\n'
                                  'user_pref("mailnews.start_page.enabled", false);\n'
                                  'user_pref("mail.inappnotifications.enabled", false);\n'
                                  'user_pref("datareporting.policy.dataSubmissionEnabled", false);\n'
                                  'user_pref("datareporting.policy.firstRunURL", "");\n'
                                  'user_pref("app.donation.eoy.version.viewed", 999);\n')
    table = [
        ("firefox", "firefox-esr", "html", ["--profile", profile, "--no-remote"]),
        ("firefox pdf", "firefox-esr", "pdf", ["--profile", profile, "--no-remote"]),
        ("chromium", "chromium", "html", ["--no-sandbox", "--no-first-run", f"--user-data-dir={folder}/chromium"]),
        ("okular", "okular", "pdf", []),
        ("evince", "evince", "pdf", []),
        ("writer", "soffice", "odt", ["--norestore", "--nologo", f"-env:UserInstallation=file://{folder}/office"]),
        ("kate", "kate", "txt", ["--startanon"]),
        ("gtk 4 editor", "gnome-text-editor", "txt", []),
        ("gtk 3 editor", "mousepad", "txt", []),
        ("thunderbird", "thunderbird", "eml", ["--profile", mail, "--no-remote"]),
    ]
    for name, program, kind, arguments in table:
        if not shutil.which(program) or kind not in files:
            print(f"{name:14} not installed", flush=True)
            continue
        yield Reader(name, [program, *map(str, arguments), str(files[kind])], close_by_click=kind == "eml",
                     first_key="ctrl+4" if program == "okular" else None)  # its tool that marks text


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("program")
    parser.add_argument("--words", type=int, default=100)
    parser.add_argument("--log", type=pathlib.Path, required=True)
    parser.add_argument("--only", nargs="*", default=[], help="programs; 'rest' is the pointer at rest")
    options = parser.parse_args()
    article = Article()
    with tempfile.TemporaryDirectory() as name, options.log.open("w") as log:
        folder = pathlib.Path(name)
        session = Session(options.program, folder)
        session.start()
        print(f"{'':14} marked arrived  right   held  whole  clean    all", flush=True)
        for reader in readers_for(article.write(folder), folder):
            if options.only and reader.name not in options.only:
                continue
            session.stop()  # what was asked once is not asked again
            session.start()
            reader.open()
            if reader.settle(folder, article):
                counts = read_in(session, reader, article, options.words, log)
                print(f"{reader.name:14} " + " ".join(f"{n:6}" for n in counts.values()), flush=True)
            else:
                print(f"{reader.name:14} did not show the text", flush=True)
                shutil.copy(folder / "screen.png", options.log.with_suffix(f".{reader.name.replace(' ', '-')}.png"))
            log.flush()
            reader.close()
        if not options.only or "rest" in options.only:
            rest(session, folder, article, 2 * options.words, log)
        session.stop()


main()
