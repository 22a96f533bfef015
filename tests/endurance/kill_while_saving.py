"""Kills programs while they save, and looks at what is left.

kill_while_saving.py TIMES SEED BIN TESTS-BIN DEMO WORK

TIMES kills each while a definition, a PDF and a workbook are saved in a loop (TESTS-BIN/corvane-save-endlessly), and a
fifth of that while BIN/corvane-batch writes a PDF and a workbook of the clinic in DEMO. After each kill the target must
be byte for byte the old or the new file, and what else lies beside it a temporary file by its name, gone after the next
save. Ends with status 1 at the first that is not, and when no kill fell into the writing.
"""
import collections
import os
import random
import subprocess
import sys
import time

from saving import KINDS, SavingLoop, check_pdf, content, fail, temporaries

PHASES = ("between two saves", "file made, empty", "partly written", "whole, not in place")
BATCH_PHASES = ("before the writing", "while writing", "after it, the new file in place")
PDF_SAMPLE = 10


def pdf_text(path):
    return subprocess.run(["pdftotext", "-layout", path, "-"], capture_output=True, check=True).stdout


def phase_of(left, folder, versions):
    if not left:
        return PHASES[0]
    size = os.path.getsize(os.path.join(folder, left[0]))
    if size == 0:
        return PHASES[1]
    whole = size in (len(version) for version in versions)
    return PHASES[3] if whole else PHASES[2]


def histogram(title, counts, phases):
    print(f"\n{title}")
    for phase in phases:
        print(f"  {phase:32} {counts[phase]:5}  {'#' * min(counts[phase], 60)}")


class KilledLoop(SavingLoop):
    """A saving loop that is killed and started again, in one folder."""

    def __init__(self, kind, program, definition, work):
        folder = os.path.join(work, kind)
        os.makedirs(folder)
        super().__init__(kind, program, definition, folder, folder + "-versions")
        self.known = []

    def kill_once(self, chance):
        """Returns the phase that the kill fell into and how long a save takes, in microseconds."""
        process, duration = self.start()
        with process:
            time.sleep(chance.uniform(0, 3 * duration / 1e6))
            process.kill()
        left = self.left()
        if set(left) & set(self.known):
            fail(f"temporary files were not cleaned up: {left}")
        if len(left) > 1:
            fail(f"more than one temporary file after one kill: {left}")
        self.known = left
        self.check_target(self.target)
        return phase_of(left, self.folder, self.versions()), duration


def kill_in_loop(loop, times, chance):
    counts = collections.Counter()
    durations = []
    for number in range(times):
        phase, duration = loop.kill_once(chance)
        counts[phase] += 1
        durations.append(duration)
        if loop.kind == "pdf" and number % max(1, times // PDF_SAMPLE) == 0:
            check_pdf(loop.target)
    durations.sort()
    histogram(f"{loop.kind}: {times} kills; a save takes {durations[times // 2] / 1000:.1f} ms", counts, PHASES)
    if counts[PHASES[1]] + counts[PHASES[2]] + counts[PHASES[3]] == 0:
        fail("no kill fell into the writing")


class BatchRun:
    """The batch program writing a PDF and a workbook over older ones."""

    OLD = b"an older file"

    def __init__(self, batch, demo, work):
        self.folder = os.path.join(work, "batch")
        os.makedirs(self.folder)
        self.targets = [os.path.join(self.folder, name) for name in ("out.pdf", "out.xls")]
        self.command = [batch, "run", "Phone list", "--folder", demo, "--user", "nora",
                        "--pdf", self.targets[0], "--xls", self.targets[1]]
        self.environment = dict(os.environ, CORVANE_PASSWORD="clinic")
        self.left = set()

    def start(self):
        self.left = self.temporaries()
        for target in self.targets:
            with open(target, "wb") as file:
                file.write(self.OLD)
        return subprocess.Popen(self.command, env=self.environment)

    def temporaries(self):
        return set(temporaries(self.folder, *(os.path.basename(target) for target in self.targets)))

    def is_writing(self):
        return bool(self.temporaries() - self.left)

    def wait_until(self, process, writing):
        while process.poll() is None and self.is_writing() != writing:
            time.sleep(0.0005)
        return time.monotonic()

    def measure(self):
        """Seconds from the start to the first temporary file, and from there to the last one's end."""
        start = time.monotonic()
        process = self.start()
        writing = self.wait_until(process, True)
        written = self.wait_until(process, False)
        if process.wait() != 0:
            fail(f"{self.command} ended with status {process.returncode}")
        self.new_text = pdf_text(self.targets[0])
        self.new_rows = content(self.targets[1])
        return writing - start, written - writing

    def kill_once(self, before, during, chance):
        process = self.start()
        if chance.random() < 0.2:
            time.sleep(chance.uniform(0, before))
        else:
            self.wait_until(process, True)
            time.sleep(chance.uniform(0, 1.5 * during))
        process.kill()
        process.wait()
        now = self.temporaries()
        left = now - self.left
        if left and now & self.left:
            fail(f"temporary files were not cleaned up: {now & self.left}")
        old = [content(target) == self.OLD for target in self.targets]
        if not old[0]:
            check_pdf(self.targets[0])
            if pdf_text(self.targets[0]) != self.new_text:
                fail("the new PDF does not hold the report")
        if not old[1] and len(content(self.targets[1])) != len(self.new_rows):
            fail("the new workbook is not whole")
        if left:
            return BATCH_PHASES[1]
        return BATCH_PHASES[0] if all(old) else BATCH_PHASES[2]


def kill_batch(run, times, chance):
    before, during = (min(figures) for figures in zip(*(run.measure() for _ in range(3))))
    counts = collections.Counter(run.kill_once(before, during, chance) for _ in range(times))
    run.measure()
    if run.temporaries():
        fail("temporary files were not cleaned up")
    histogram(f"corvane-batch: {times} kills; {before:.2f} s to the writing, which takes {during:.2f} s", counts, BATCH_PHASES)
    if counts[BATCH_PHASES[1]] == 0:
        fail("no kill fell into the writing")


def main():
    times, seed = int(sys.argv[1]), int(sys.argv[2])
    programs, tests, demo, work = sys.argv[3:]
    chance = random.Random(seed)
    definition = os.path.join(demo, "Reports", "Phone list.rpt")
    for kind in KINDS:
        kill_in_loop(KilledLoop(kind, os.path.join(tests, "corvane-save-endlessly"), definition, work), times, chance)
    kill_batch(BatchRun(os.path.join(programs, "corvane-batch"), demo, work), max(10, times // 5), chance)
    print("\nEvery file was the old or the new one.")


main()
