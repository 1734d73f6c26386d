"""The schema of OCP streams, for the checks beside this file."""
import json
import pathlib

import jsonschema


def validator(folder):
    """A validator for one line of a stream, from the schema files in the folder."""
    store = {}
    for file in pathlib.Path(folder).glob("*.json"):
        schema = json.loads(file.read_text(encoding="utf-8"))
        jsonschema.Draft202012Validator.check_schema(schema)
        store[schema["$id"]] = schema
    root = next(schema for name, schema in store.items() if name.endswith("/output"))
    resolver = jsonschema.RefResolver(root["$id"], root, store)
    return jsonschema.Draft202012Validator(root, resolver=resolver)
