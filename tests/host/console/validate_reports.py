#!/usr/bin/python3
"""Validates JSON reports against their schema.

Usage: validate_reports.py SCHEMA FOLDER
Prints how many reports of the folder are valid; each that is not is named and makes the exit code 1.
"""

import json
import pathlib
import sys

import jsonschema

schema, folder = json.loads(pathlib.Path(sys.argv[1]).read_text(encoding="utf-8")), pathlib.Path(sys.argv[2])
valid = 0
for path in sorted(folder.glob("*.json")):
    try:
        jsonschema.validate(json.loads(path.read_text(encoding="utf-8")), schema)
        valid += 1
    except (ValueError, jsonschema.ValidationError) as error:
        print(f"{path.name}: {error}")
print(f"{valid} valid")
sys.exit(valid == 0 or valid != len(list(folder.glob("*.json"))))
