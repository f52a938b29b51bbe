# SPDX-License-Identifier: Apache-2.0
"""schemaagrees.py KORA SCHEMA DOCUMENT...

The JSON Schema of the metadata and the library's parser give the same verdict on the documents and on seeded changes
of them. Where a schema cannot speak, the list below says so, and the test that it indeed does not.
"""
import copy
import json
import os
import random
import subprocess
import sys
import tempfile

try:
    import jsonschema
except ImportError:
    print("python3-jsonschema is not installed")
    sys.exit(77)

# What a schema cannot tell, with the code that the parser refuses it with: the path in alltypes.json and the value.
BEYOND_SCHEMAS = [
    ("requirements name no field of the widget", 10038, ["widgets", 0, "fields", 6, "requirements"], "speed>0"),
    ("requirements name a text field", 10038, ["widgets", 0, "fields", 6, "requirements"], "text==1"),
    ("the default is none of the options", 10031, ["widgets", 0, "fields", 7, "defaultValue"], 3),
    ("an index stands twice", 10031, ["widgets", 0, "fields", 3, "defaultValue"],
     [{"i": 1, "v": "a"}, {"i": 1, "v": "b"}]),
    ("a color is not known", 10031, ["widgets", 0, "fields", 8, "defaultValue"], "reddish"),
]
SILENT_CODES = {code for _, code, _, _ in BEYOND_SCHEMAS}
# What the parser reads and the schema refuses: spellings that nobody should use.
STRICTER = [
    ("a size with an exponent", ["widgets", 0, "defaultSize"], "1e2x1e2"),
    ("a version with a sign", ["version"], "+1.0.0"),
]

STRANGERS = [None, True, 0, -1, 0.5, 3e9, "", "true", "count", "tag", "option", "string", "1.0", "1.2.3", "it-IT",
             "Roboto", "10x10", "a b", "on==true", [], ["a", "b"], [1], {}, {"size": 0}, [{"i": 1}]]


def replaced(document, path, value):
    changed = copy.deepcopy(document)
    parent = changed
    for step in path[:-1]:
        parent = parent[step]
    parent[path[-1]] = value
    return changed


def mutated(document, rng):
    changed = copy.deepcopy(document)
    node = changed
    while True:
        keys = list(node) if isinstance(node, dict) else list(range(len(node)))
        key = rng.choice(keys)
        child = node[key]
        if isinstance(child, (dict, list)) and child and rng.random() < 0.85:
            node = child
        elif rng.random() < 0.2:
            del node[key]
            return changed
        else:
            node[key] = rng.choice(STRANGERS)
            return changed


def refusals(kora, documents):
    """The codes that the parser refuses each document with."""
    with tempfile.TemporaryDirectory() as folder:
        names = []
        for index, document in enumerate(documents):
            names.append(os.path.join(folder, f"{index}.json"))
            with open(names[-1], "w", encoding="utf-8") as file:
                json.dump(document, file)
        run = subprocess.run([kora, "check", "--format", "json", *names], capture_output=True, check=False)
        codes = {name: set() for name in names}
        for problem in json.loads(run.stdout)["problems"]:
            if problem["severity"] == "error":
                codes[problem["file"]].add(problem["code"])
        return [codes[name] for name in names]


def main():
    kora, schema_path, *paths = sys.argv[1:]
    with open(schema_path, encoding="utf-8") as file:
        schema = json.load(file)
    jsonschema.Draft7Validator.check_schema(schema)
    validator = jsonschema.Draft7Validator(schema)
    originals = []
    for path in paths:
        with open(path, encoding="utf-8") as file:
            originals.append(json.load(file))
    base = originals[0]

    failures = []
    for name, path, value in STRICTER:
        document = replaced(base, path, value)
        if validator.is_valid(document) or refusals(kora, [document]) != [set()]:
            failures.append(f"not only the schema refuses: {name}")
    beyond = [replaced(base, path, value) for _, _, path, value in BEYOND_SCHEMAS]
    for (name, code, _, _), document, codes in zip(BEYOND_SCHEMAS, beyond, refusals(kora, beyond)):
        if not validator.is_valid(document) or codes != {code}:
            failures.append(f"not only the parser refuses: {name} {codes}")

    corpus = list(originals)
    for seed in range(600):
        corpus.append(mutated(originals[seed % 2], random.Random(seed)))
    for index, (document, codes) in enumerate(zip(corpus, refusals(kora, corpus))):
        errors = [error.message for error in validator.iter_errors(document)]
        agrees = bool(errors) == bool(codes) or (not errors and codes <= SILENT_CODES)
        if not agrees:
            failures.append(f"document {index}: parser {sorted(codes)}, schema {errors[:2]}")
    for failure in failures:
        print(failure)
    print(f"{len(corpus)} documents, {len(failures)} disagreements")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
