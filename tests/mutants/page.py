"""The page that lists the mutants which survive.

One heading per file, and below it, as code, the line of each survivor and, behind an arrow, what was changed in it;
then the reason. A reason that begins with "Equivalent" says that no host could see the difference.
"""

import collections


def listed(text):
    """Counts the survivors that the page lists, by file, line and change; tells which are equivalent."""
    entries = collections.Counter()
    equivalent = set()
    complaints = []
    file = code = None
    unexplained = []
    for line in text.splitlines() + ["## end"]:
        if line.startswith("## "):
            complaints += [f"{file}: no reason given: {entry[1]}" for entry in unexplained]
            file = line[3:].strip()
            unexplained = []
        elif line.startswith("    -> ") and code is not None:
            entry = (file, code, line[7:].strip())
            entries[entry] += 1
            unexplained.append(entry)
        elif line.startswith("    "):
            code = line.strip()
        elif line.strip():
            if line.startswith("Equivalent"):
                equivalent.update(unexplained)
            unexplained = []
    return entries, equivalent, complaints


def equivalents(mutants, path):
    """Those that the page lists as equivalent."""
    _, same, _ = listed(path.read_text(encoding="utf-8"))
    return {mutant for mutant in mutants if (mutant.path, mutant.code, mutant.place.what) in same}


def compare(verdicts, path, whole):
    """What the page lacks and, of a run of all mutants, what it has too much; and the mutants that are equivalent."""
    entries, same, complaints = listed(path.read_text(encoding="utf-8") if path.exists() else "")
    equivalent = set()
    left = entries.copy()
    for mutant, verdict in sorted(verdicts.items(), key=lambda item: (item[0].path, item[0].place.line)):
        entry = (mutant.path, mutant.code, mutant.place.what)
        if verdict.caught:
            continue
        if left[entry] > 0:
            left[entry] -= 1
            if entry in same:
                equivalent.add(mutant)
        else:
            complaints.append(f"survives, and is not listed in {path.name} ({verdict.by}): {mutant}")
    if whole:
        for (file, code, what), count in sorted(left.items()):
            if count > 0:
                complaints.append(f"{file}: listed in {path.name}, and caught or gone: {code} -> {what}")
    return complaints, equivalent
