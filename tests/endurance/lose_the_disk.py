"""Takes the disk away from programs that save, and looks at what they say and at what is left.

lose_the_disk.py TIMES SEED BIN TESTS-BIN DEMO WORK

A definition, a PDF and a workbook are saved in a loop (TESTS-BIN/corvane-save-endlessly), TIMES each on a disk that
somebody else fills to its last byte at a random moment, and TIMES each in a network folder whose connection dies at one.
Then BIN/corvane-batch does the same with a clinic (DEMO), and reads a clinic whose folder is gone. Each program must
end by itself with a sentence that says what happened and what to do. The target must be byte for byte the old or the
new file. A full disk keeps no temporary file; a lost folder at most one, gone after the next save.
A definition is held open while it is replaced, and a network's client then takes two steps: it gives the old file a name
of its own first. Between them no file has the definition's name; the old one must be there whole, and is counted.

The network folder is sshfs with an sftp server behind it, without a network. Needs the right to mount.
"""
import collections
import contextlib
import os
import random
import re
import shutil
import subprocess
import sys
import time

from saving import KINDS, NETWORKS_OWN, SavingLoop, check_pdf, content, fail

PATIENCE = 60  # seconds within which a program must have noticed
NO_ROOM = "No space left on device. Free some space"
OUT_OF_REACH = re.compile('The folder "[^"]*" cannot be reached: [^.]*[.] (Choose|If it is)')
BATCH_STATUS_FAILED, BATCH_STATUS_NO_CLINIC = 1, 4


def run(*command):
    subprocess.run(command, check=True)


class SmallDisk:
    """A disk of a few megabytes in memory."""

    def __init__(self, folder, kilobytes):
        self.folder = folder
        self.filler = os.path.join(folder, "filler")
        os.makedirs(folder)
        run("mount", "-t", "tmpfs", "-o", f"size={kilobytes}k", "corvane-full", folder)

    def fill(self, until=lambda: True):
        """Again and again: a save that came through gives the older file's room back."""
        with open(self.filler, "wb", buffering=0) as file:
            while True:
                with contextlib.suppress(OSError):
                    while True:
                        file.write(b"x" * 4096)
                if until():
                    return
                time.sleep(0.001)

    def empty(self):
        os.remove(self.filler)

    def close(self):
        run("umount", self.folder)


class NetworkFolder:
    """A folder of a server, mounted; `behind` is the server's own."""

    def __init__(self, folder, behind):
        self.folder, self.behind = folder, behind
        for each in (folder, behind):
            os.makedirs(each, exist_ok=True)
        self.server = self.client = None

    def connect(self):
        self.server = subprocess.Popen(["/usr/lib/openssh/sftp-server"], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                       stderr=subprocess.DEVNULL)
        self.client = subprocess.Popen(["sshfs", "-f", "-o", "passive,dir_cache=no", f":{self.behind}", self.folder],
                                       stdin=self.server.stdout, stdout=self.server.stdin, stderr=subprocess.DEVNULL)
        self.server.stdin.close()
        self.server.stdout.close()
        end = time.monotonic() + PATIENCE
        while not os.path.ismount(self.folder):
            if time.monotonic() > end:
                fail("sshfs does not mount")
            time.sleep(0.01)

    def lose(self):
        """The client first: it would unmount the folder in good order, and what is mounted stays there for good."""
        for process in (self.client, self.server):
            process.kill()
            process.wait()

    def close(self):
        self.lose()
        run("umount", "--lazy", self.folder)


def ended(process, kind):
    """The words that the program ended with by itself."""
    try:
        words = process.communicate(timeout=PATIENCE)[1].strip()
    except subprocess.TimeoutExpired:
        process.kill()
        fail(f"{kind}: not noticed within {PATIENCE} seconds")
    if process.returncode != 1:
        fail(f"{kind}: ended with status {process.returncode}: {words}")
    return words


def causes(title, counts):
    print(f"\n{title}")
    for words, count in counts.most_common():
        print(f"  {count:4}  {words}")


def anonymous(words, folder):
    return words.replace(folder, "…")


def fill_while_saving(kind, times, program, definition, work, chance):
    disk = SmallDisk(os.path.join(work, kind + "-full"), 8192)
    loop = SavingLoop(kind, program, definition, disk.folder, os.path.join(work, kind + "-full-versions"))
    counts = collections.Counter()
    for _ in range(times):
        process, duration = loop.start()
        time.sleep(chance.uniform(0, 3 * duration / 1e6))
        disk.fill(until=lambda end=time.monotonic() + PATIENCE: process.poll() is not None or time.monotonic() > end)
        words = ended(process, kind)
        if NO_ROOM not in words or loop.name not in words:
            fail(f"{kind}: a full disk is told as: {words}")
        disk.empty()
        if loop.left():
            fail(f"{kind}: left on the full disk: {loop.left()}")
        loop.check_target(loop.target)
        counts[anonymous(words, disk.folder)] += 1
    if kind == "pdf":
        check_pdf(loop.target)
    disk.close()
    causes(f"{kind}: disk filled {times} times", counts)


def networks_own(folder):
    return [os.path.join(folder, name) for name in os.listdir(folder) if NETWORKS_OWN.fullmatch(name)]


def put_back(loop, folder):
    """Whether the definition had only the name that the network's client gave it; it has its own again."""
    target = os.path.join(folder, loop.name)
    if loop.kind != "definition" or os.path.exists(target):
        return False
    whole = [name for name in networks_own(folder) if content(name) in loop.versions()]
    if not whole:
        fail("the definition is gone, under any name")
    os.rename(whole[0], target)
    return True


def lose_while_saving(kind, times, program, definition, work, chance):
    network = NetworkFolder(os.path.join(work, kind + "-lost"), os.path.join(work, kind + "-server"))
    loop = SavingLoop(kind, program, definition, network.folder, os.path.join(work, kind + "-lost-versions"))
    counts = collections.Counter()
    known = []
    for _ in range(times):
        network.connect()
        process, duration = loop.start()
        time.sleep(chance.uniform(0, 3 * duration / 1e6))
        network.lose()
        words = ended(process, kind)
        network.close()
        if loop.name not in words or not OUT_OF_REACH.search(words):
            fail(f"{kind}: a lost folder is told as: {words}")
        left = loop.left(network.behind)
        if set(left) & set(known) or len(left) > 1:
            fail(f"{kind}: temporary files were not cleaned up: {left}")
        known = left
        note = " (a temporary file is left)" if left else ""
        if put_back(loop, network.behind):
            note += " (the old file has the network's own name)"
        loop.check_target(os.path.join(network.behind, loop.name))
        for name in networks_own(network.behind):
            os.remove(name)
        counts[anonymous(words, network.folder) + note] += 1
    if kind == "pdf":
        check_pdf(os.path.join(network.behind, loop.name))
    causes(f"{kind}: network folder lost {times} times", counts)


def batch(program, folder, *options):
    return subprocess.run([program, "run", "Phone list", "--folder", folder, "--user", "nora", *options],
                          env=dict(os.environ, CORVANE_PASSWORD="clinic"), stderr=subprocess.PIPE, text=True,
                          timeout=PATIENCE, check=False)


def expect(result, status, *words):
    said = result.stderr.strip()
    if result.returncode != status or not all(word in said for word in words):
        fail(f"status {result.returncode} and not {status}, or other words: {said}")
    print(f"  status {status}: {said}")


def try_batch(program, demo, work):
    print("\ncorvane-batch")
    old = b"an older file"
    disk = SmallDisk(os.path.join(work, "batch-full"), 64)
    targets = {option: os.path.join(disk.folder, "out." + option) for option in ("pdf", "xls", "text")}
    for target in targets.values():
        with open(target, "wb") as file:
            file.write(old)
    disk.fill()
    for option, target in targets.items():
        expect(batch(program, demo, "--" + option, target), BATCH_STATUS_FAILED, NO_ROOM, target)
    disk.empty()
    if sorted(os.listdir(disk.folder)) != sorted(map(os.path.basename, targets.values())):
        fail(f"left on the full disk: {os.listdir(disk.folder)}")
    if any(content(target) != old for target in targets.values()):
        fail("an older file is not what it was")
    disk.close()

    network = NetworkFolder(os.path.join(work, "clinic"), os.path.join(work, "clinic-server"))
    shutil.copytree(demo, network.behind, dirs_exist_ok=True)
    network.connect()
    text = os.path.join(work, "list.txt")
    if batch(program, network.folder, "--text", text).returncode != 0 or os.path.getsize(text) == 0:
        fail("the clinic in the network folder does not work while the server lives")
    os.remove(text)
    network.lose()
    expect(batch(program, network.folder, "--text", text), BATCH_STATUS_NO_CLINIC, "CORVANE.INI")
    if os.path.exists(text):
        fail("a file was written without a clinic")
    network.close()


def main():
    times, seed = int(sys.argv[1]), int(sys.argv[2])
    programs, tests, demo, work = sys.argv[3:]
    chance = random.Random(seed)
    saver = os.path.join(tests, "corvane-save-endlessly")
    definition = os.path.join(demo, "Reports", "Phone list.rpt")
    for examine in (fill_while_saving, lose_while_saving):
        for kind in KINDS:
            examine(kind, times, saver, definition, work, chance)
    try_batch(os.path.join(programs, "corvane-batch"), demo, work)
    print("\nEvery file was the old or the new one, and every failure was told.")


main()
