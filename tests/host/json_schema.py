"""Holds JSON values against a schema: json_schema.py SCHEMA DEFINITION FILE...

Knows the words that docs/json-schema.json uses, and refuses any other one. Prints each place that does not fit.
"""
import json
import sys

KNOWN = {"$schema", "title", "description", "definitions", "$ref", "type", "const", "enum", "anyOf", "items",
         "properties", "required", "additionalProperties"}
TYPES = {"object": dict, "array": list, "string": str, "boolean": bool, "null": type(None)}


def is_type(value, name):
    if name == "number":
        return isinstance(value, (int, float)) and not isinstance(value, bool)
    if name == "integer":
        return isinstance(value, int) and not isinstance(value, bool)
    return isinstance(value, TYPES[name])


def faults(value, schema, root, place):
    unknown = set(schema) - KNOWN
    if unknown:
        return [f"{place}: words of the schema that are not known: {unknown}"]
    if "$ref" in schema:
        return faults(value, root["definitions"][schema["$ref"].rsplit("/", 1)[1]], root, place)
    if "anyOf" in schema:
        tried = [faults(value, one, root, place) for one in schema["anyOf"]]
        return [] if any(not found for found in tried) else min(tried, key=len)
    found = []
    if "const" in schema and value != schema["const"]:
        found.append(f"{place}: {value!r} is not {schema['const']!r}")
    if "enum" in schema and value not in schema["enum"]:
        found.append(f"{place}: {value!r} is none of {schema['enum']}")
    names = schema.get("type", [])
    names = [names] if isinstance(names, str) else names
    if names and not any(is_type(value, name) for name in names):
        return found + [f"{place}: {value!r} is no {' or '.join(names)}"]
    if isinstance(value, dict):
        properties = schema.get("properties", {})
        found += [f"{place}: {key} is missing" for key in schema.get("required", []) if key not in value]
        for key, member in value.items():
            if key in properties:
                found += faults(member, properties[key], root, f"{place}.{key}")
            elif schema.get("additionalProperties") is False:
                found.append(f"{place}: {key} is not told of")
    if isinstance(value, list) and "items" in schema:
        for number, member in enumerate(value):
            found += faults(member, schema["items"], root, f"{place}[{number}]")
    return found


def main():
    with open(sys.argv[1], encoding="utf-8") as file:
        root = json.load(file)
    all_faults = []
    for path in sys.argv[3:]:
        with open(path, encoding="utf-8") as file:
            all_faults += faults(json.load(file), root["definitions"][sys.argv[2]], root, sys.argv[2])
    print("\n".join(all_faults[:20]))
    return 1 if all_faults else 0


sys.exit(main())
