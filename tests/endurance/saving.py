"""What the examinations of saving share: programs that save in a loop, and looking at what is left."""
import os
import re
import shutil
import subprocess
import sys

TEMPORARY = re.compile(r"\.corvane-saving-\w{6}\.tmp")
NETWORKS_OWN = re.compile(r"\.fuse_hidden\w+")  # a file that was replaced while open, until it is closed
KINDS = ("definition", "pdf", "workbook")


def fail(words):
    print(f"FAILED: {words}")
    sys.exit(1)


def content(path):
    with open(path, "rb") as file:
        return file.read()


def temporaries(folder, *others):
    names = sorted(name for name in set(os.listdir(folder)) - set(others) if not NETWORKS_OWN.fullmatch(name))
    for name in names:
        if not TEMPORARY.fullmatch(name):
            fail(f"a file of no known kind is left: {name}")
    return names


def check_pdf(path):
    result = subprocess.run(["qpdf", "--check", path], capture_output=True, text=True, check=False)
    if result.returncode != 0:
        fail(f"qpdf --check {path}:\n{result.stdout}{result.stderr}")


class SavingLoop:
    """One kind of file in a folder, saved in a loop by a program that ends only when saving fails or it is killed."""

    def __init__(self, kind, program, definition, folder, aside):
        self.kind = kind
        self.folder = folder
        os.makedirs(aside)
        self.name = {"definition": "saved.rpt", "pdf": "saved.pdf", "workbook": "saved.xls"}[kind]
        self.target = os.path.join(folder, self.name)
        self.references = [os.path.join(aside, version + self.name) for version in ("first", "second")]
        if kind == "definition":
            shutil.copy(definition, self.references[0])
        self.command = [program, kind, self.target, *self.references]

    def start(self):
        """Returns the process once it saves in a loop, and how long a save takes, in microseconds."""
        process = subprocess.Popen(self.command, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
        ready = process.stdout.readline().split()
        if len(ready) != 2:
            fail(f"{self.command} did not start: {process.communicate()[1]}")
        return process, int(ready[1])

    def versions(self):
        return [content(reference) for reference in self.references]

    def check_target(self, path):
        if content(path) not in self.versions():
            fail(f"{path} is neither the old nor the new file")

    def left(self, folder=None):
        """The temporary files in the folder."""
        return temporaries(folder or self.folder, self.name)
