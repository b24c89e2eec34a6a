"""Filters that make one table of what `tolvane --json` has answered in many shops."""

import csv
import io
import json


def words_of(answer, exit_codes):
    """What became of the command, in words."""
    if answer.get("unreachable"):
        return "unreachable"
    code = answer.get("rc")
    if code is None:
        return "did not run"
    return exit_codes.get(code, "unexpected end")


def errors_of(answer):
    """What the command or Ansible said of it, on one line; not of scales, which have rows of their own."""
    code = answer.get("rc")
    if code == 0:
        return ""
    lines = answer.get("msg" if code is None else "stderr", "").splitlines()
    return " ".join(" ".join(line.split()) for line in lines if not line.startswith("tolvane: scale "))


def scales_of(answer):
    """The rows that the command printed; none when it did not get so far."""
    try:
        return json.loads(answer.get("stdout") or "{}").get("scales", [])
    except ValueError:
        return []


def cell(value):
    if value is None:
        return ""
    if isinstance(value, bool):
        return "yes" if value else "no"
    return " ".join(str(value).split())


def rows(shops, hostvars, exit_codes, columns):
    """The table with its heading: a row for each scale, and one for a shop without an answer."""
    table = [["shop", "code", "words"] + columns]
    for shop in shops:
        answer = hostvars[shop].get("tolvane_answer", {})
        start = [shop, cell(answer.get("rc")), words_of(answer, exit_codes)]
        for scale in scales_of(answer) or [{}]:
            values = [cell(scale.get(column)) for column in columns]
            if not values[-1]:
                values[-1] = errors_of(answer)
            table.append(start + values)
    return table


def as_csv(table):
    out = io.StringIO()
    csv.writer(out, lineterminator="\n").writerows(table)
    return out.getvalue()


def as_text(table):
    widths = [max(len(row[i]) for row in table) for i in range(len(table[0]))]
    lines = ("  ".join(text.ljust(width) for text, width in zip(row, widths)) for row in table)
    return "".join(line.rstrip() + "\n" for line in lines)


class FilterModule:
    def filters(self):
        return {
            "tolvane_rows": rows,
            "tolvane_table": lambda table, form: as_csv(table) if form == "csv" else as_text(table),
            "tolvane_words": words_of,
        }
