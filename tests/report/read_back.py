"""Prints what other programs see in a CSV or DXF file, as JSON."""
import csv
import json
import sys


def read_csv(path):
    with open(path, encoding="utf-8", newline="") as file:
        return list(csv.DictReader(file, strict=True))


def decoded(text):
    """As a reader of release 12 shows a text: codes of signs, carets of control characters."""
    from ezdxf.lldxf.encoding import decode_dxf_unicode

    text = decode_dxf_unicode(text).encode("utf-16", "surrogatepass").decode("utf-16")
    for code in range(0x20):
        text = text.replace("^" + chr(code + 0x40), chr(code))
    return text.replace("^ ", "^").replace("%%%", "%")


def read_dxf(path):
    import ezdxf

    document = ezdxf.readfile(path)
    audit = document.audit()
    entities = []
    for entity in document.modelspace():
        one = {"type": entity.dxftype(), "layer": entity.dxf.layer, "linetype": entity.dxf.linetype}
        if one["type"] == "TEXT":
            one["text"] = decoded(entity.dxf.text)
        if one["type"] == "POINT":
            one["at"] = list(entity.dxf.location)
        if one["type"] == "LINE":
            one["at"] = list(entity.dxf.start) + list(entity.dxf.end)
        if one["type"] == "POLYLINE":
            one["at"] = [list(place) for place in entity.points()]
            one["closed"] = entity.is_closed
        entities.append(one)
    return {
        "version": document.dxfversion,
        "errors": [str(error.message) for error in audit.errors + audit.fixes],
        "layers": {layer.dxf.name: layer.dxf.color for layer in document.layers},
        "entities": entities,
    }


json.dump(read_csv(sys.argv[1]) if sys.argv[1].endswith(".csv") else read_dxf(sys.argv[1]), sys.stdout)
