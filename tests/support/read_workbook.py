"""Prints what xlrd reads of .xls files, one line per fact, its parts separated by tabs.

read_workbook.py cells FILE...         cells of each file, after a line with its name, then its sheets' looks
read_workbook.py stream NAME FILE OUT  copies a stream of the container to OUT
"""
import sys

import xlrd
from xlrd.compdoc import CompDoc

TYPES = {1: "text", 2: "number", 4: "boolean", 5: "error"}


def escaped(text):
    return text.replace("\\", "\\\\").replace("\n", "\\n").replace("\t", "\\t")


def content(cell, book):
    if cell.ctype == 3 and cell.value < 1:
        ms = round(cell.value * 86_400_000)
        return "time", "%02d:%02d:%02d.%03d" % (ms // 3_600_000, ms // 60_000 % 60, ms // 1000 % 60, ms % 1000)
    if cell.ctype == 3:
        return "date", xlrd.xldate_as_datetime(cell.value, book.datemode).isoformat(timespec="milliseconds")
    if cell.ctype == 2:
        return "number", "%.17g" % cell.value
    return TYPES.get(cell.ctype, "other"), escaped(str(cell.value))


def print_cells(name):
    book = xlrd.open_workbook(name, formatting_info=True)
    print("file", name, sep="\t")
    for sheet in book.sheets():
        for row in range(sheet.nrows):
            for column in range(sheet.row_len(row)):
                cell = sheet.cell(row, column)
                if cell.ctype in (0, 6):
                    continue
                xf = book.xf_list[cell.xf_index]
                bold = "bold" if book.font_list[xf.font_index].weight >= 700 else "plain"
                code = book.format_map[xf.format_key].format_str
                print("cell", sheet.name, row, column, *content(cell, book), code, bold, sep="\t")
        frozen = sheet.horz_split_pos if sheet.panes_are_frozen else 0
        widths = ",".join(str(sheet.colinfo_map[c].width) for c in sorted(sheet.colinfo_map)[:16])
        print("sheet", sheet.name, sheet.nrows, sheet.ncols, frozen, widths, sep="\t")
    for item in book.name_obj_list:
        print("name", item.name, item.scope, "hidden" if item.hidden else "shown", item.result.text, sep="\t")


def main(arguments):
    sys.stdout.reconfigure(encoding="utf-8")
    if arguments[0] == "stream":
        with open(arguments[2], "rb") as file:
            data, start, size = CompDoc(file.read()).locate_named_stream(arguments[1])
        with open(arguments[3], "wb") as out:
            out.write(data[start : start + size])
        return
    for name in arguments[1:]:
        print_cells(name)


main(sys.argv[1:])
