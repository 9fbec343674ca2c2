#!/usr/bin/env python3
"""Writes the seed corpus of every fuzz target into fuzz/corpus/<target>/.

The seeds are small files made here from the file layout, one per shape worth starting from.
Run it again after changing a seed; it rewrites the folders from scratch. Name targets
(`make_corpus.py fuzz_rav fuzz_csv`) to rewrite only theirs."""
import pathlib
import shutil
import struct
import sys

HERE = pathlib.Path(__file__).resolve().parent
CORPUS = HERE / "corpus"


def field(text: bytes, n: int) -> bytes:
    """A text field as files hold it: the text, one NUL, blanks up to n."""
    text = text[:n]
    return text if len(text) == n else text + b"\0" + b" " * (n - len(text) - 1)


def header(parts: int, trailer_count: int = 0, kind: int = 1, magic: bytes = b"OiFF",
           version: int = 1, file_length: int = 0, spare: int = 0) -> bytes:
    return magic + struct.pack("<hhiiii", version, kind, file_length, trailer_count, spare, parts)


def vertex(x, y, z, shadow, u, v) -> bytes:
    return struct.pack("<fffIff", x, y, z, shadow, u, v)


def part(name: bytes, texture: bytes, vertices, indices, name_raw: bool = False) -> bytes:
    out = (name if name_raw else field(name, 28)) + texture
    out += struct.pack("<ii", len(vertices), len(indices))
    out += b"".join(vertex(*v) for v in vertices)
    out += b"".join(struct.pack("<h", i) for i in indices)
    return out


QUAD = [(0, 0, 0, 0xFF808080, 0, 0), (100, 0, 0, 0xFF808080, 1, 0),
        (0, 50, 0, 0xFF808080, 0, 1), (100, 50, 0, 0xFF808080, 1, 1)]


def with_length(data: bytes) -> bytes:
    return data[:8] + struct.pack("<i", len(data)) + data[12:]


def oif_seeds():
    yield "empty.oif", with_length(header(0))
    yield "one_part.oif", with_length(header(1) + part(b"Stand North", b"cr01", QUAD, [0, 1, 2, 3]))
    yield "two_parts_trailer.oif", with_length(
        header(2, trailer_count=1, spare=7)
        + part(b"Roof", b"tx", QUAD[:3], [0, 1, 2])
        + part(b"Pitch", b"gr01", QUAD, [1, 0, 2, 2, 3, -1])
        + b"TRAILER\0\xff")
    yield "trailer_not_counted.oif", header(1, trailer_count=0, file_length=999) + part(b"A", b"a", [], []) + b"tail"
    yield "name_28.oif", with_length(header(1) + part(b"ABCDEFGHIJKLMNOPQRSTUVWXYZ01", b"cr02", QUAD[:1], [0]))
    yield "name_8bit.oif", with_length(header(1) + part("Tribüne Café".encode("cp1252"), b"\xe9t", QUAD[:2], []))
    yield "name_blanks_nul.oif", with_length(
        header(2) + part(b"  padded  " + b"\0" + b"junk after nul" + b" " * 3, b"    ", [], [], name_raw=True)
        + part(b"\0" + b"x" * 27, b"\0abc", [], [], name_raw=True))
    yield "shadow_ffffffff.oif", with_length(
        header(1) + part(b"Shadow", b"sh01", [(1.5, -2.25, 3, 0xFFFFFFFF, 0.5, 1), (float("nan"), 0, 0, 0, 0, 0)], [0, 1]))
    yield "wrong_kind.oif", header(0, kind=2)
    yield "wrong_magic.oif", header(0, magic=b"OIFF")
    yield "truncated.oif", header(1) + part(b"Short", b"cr01", QUAD, [0, 1, 2])[:-3]


def ini_seeds():
    yield "defaults.ini", (
        b"[Startup]\nMaximise=0\nNewProj=0\n\n[Terramason]\nStarter=0\nPreviews=1\nPreviewRefresh=1\n"
        b"OIFEditor=1\n\n[Previews]\nPerspectiveTex=1\nZoomAmount=500\n\n[Crowd Wizard]\nCrowdHeight=260\n"
        b"NoOfRows=10\nCrowdSpacing=150\nHome=1\n")
    yield "quoted_and_comments.ini", (
        b"; settings\r\n[Startup]\r\nMaximise = \"  1  \"\r\n# other\r\n[startup]\r\nnewproj=\"\"\r\n"
        b"[Import]\r\nCrowdHeight=  260.5abc\r\n")
    yield "long_value.ini", b"[Previews]\nZoomAmount=" + b"9" * 300 + b"\n"
    yield "no_section_and_odd_lines.ini", (
        b"loose=before any section\n[Broken\n=novalue\n[ Startup ]\nMaximise=1=2\n"
        b"Maximise=again\nkey only\n[Terramason]\nStarter=\xe9t\xe9\n")


def number_seeds():
    texts = [b"0", b"-12.5e3", b"  +.5", b"1e", b"2E+x", b"3.402823E+38", b"1E+07",
             b"0.0001234567", b"-.", b"1.79769313486232E+308", b"\t42 rows"]
    for i, t in enumerate(texts):
        yield f"text_{i:02}", t
    # Inputs whose first bytes are a float and a double of interest.
    for name, value in [("one_third", 1 / 3), ("big", 123456789.0), ("tiny", 1.5e-9), ("neg_zero", -0.0)]:
        yield f"double_{name}", struct.pack("<d", value)
        yield f"float_{name}", struct.pack("<f", value) + b"    "
    yield "float_inf", struct.pack("<f", float("inf")) + b"    "
    yield "double_max", struct.pack("<d", 1.7976931348623157e308)


def lines(*rows: str, end: str = "\r\n") -> bytes:
    return "".join(row + end for row in rows).encode("cp1252")


def rav_row(name: str, group: str, x: float, uvs=((1, 0), (1, 1), (0, 1), (0, 0))) -> list:
    """A crowd row polygon in the exporter's layout: 4 vertices and one group."""
    corners = [(x + 200, 0, 0), (x + 200, 100, 50), (x, 100, 50), (x, 0, 0)]
    return ([f"[Polygon {name}]", f"Name={name}", "NumVert=4"]
            + [f"  {c[0]:g},{c[1]:g},{c[2]:g},{uv[0]:g},{uv[1]:g},FFFFFF" for c, uv in zip(corners, uvs)]
            + ["NumGrps=1", f"Group1={group}", "NumIdx=4", "Indices=0,1,2,3"])


def rav_seeds():
    empty = ["Version=1", "NumPoly=1", "[Polygon 0]", "Name=", "NumVert=0", "NumGrps=0"]
    yield "count_one.txt", lines(*empty)
    rows = (rav_row("r1", "rowa", 0) + rav_row("r2", "rowb", 300) + rav_row("r3", "adba", -1234.56)
            + rav_row("flat", "rowc", 10, uvs=((0, 0),) * 4))
    head = ["Version=1", "NumPoly=5"] + empty[2:]
    yield "rows.txt", lines(*head, *rows)
    yield "rows_lf.txt", lines(*head, *rows, end="\n")
    yield "general.txt", lines(
        "Version=2", "Polygons=2", "[P0]", "Name=Stand=North \u00e9", "Vertices=3",
        "  100,-50.5,0,0.25,1,FF", "1e3,2,3,0,0,abcdef,extra", "7,8,9,1,0,123456", "Groups=2",
        "Group=rowa", "Count=4", "List=0,1,2,1", "Group=", "Count=0", "List=",
        "[P1]", "Name=", "Vertices=-1", "Groups=1", "Group=x", "Count=2.5", "List=2,-1,7")
    yield "short.txt", lines("Version=1", "Polygons=3", "[P0]", "Name=a", "Vertices=2", "1,2,3,4,5,FF")
    yield "large_numbers.txt", lines("Version=1", "Polygons=1", "[P0]", "Name=a", "Vertices=1",
                                     "3.4028235e38,-1e39,32767.5,0,0,FFFFFF", "Groups=32767")


def csv_seeds():
    def row(*cells):
        return ",".join(f'"{c}"' for c in cells)
    head = row("Name", "Kind", "Object Type", "Layer")
    points = [row("P", "point", f"{i},{i * 2},{-i}", "Default") for i in range(9)]
    yield "points.csv", lines(head, *points)
    yield "mixed.csv", lines(head, row("C", "curve", "1,2,3", "L"), row("P", "point", "", "L"),
                             row("P", "Point", "1,2,3", "L"), *points[:5])
    yield "no_type.csv", lines(row("Object Type", "Kind"), row("1,2,3", "point"))
    yield "ragged.csv", lines(head, row("P", "point", "1,2,3"), row("P", "point", "1,2", "L", "x"))
    yield "unquoted.csv", lines(head, 'P,"point","1,2,3","L"') + b'"P","point","4,5'


def chunk(cid: int, *pieces: bytes) -> bytes:
    body = b"".join(pieces)
    return struct.pack("<HI", cid, 6 + len(body)) + body


def tds_seeds():
    def obj(name, points, uvs, faces, material=None, sub=()):
        mesh = [chunk(0x4110, struct.pack("<h", len(points)), *(struct.pack("<fff", *p) for p in points))]
        if uvs:
            mesh.append(chunk(0x4140, struct.pack("<h", len(uvs)), *(struct.pack("<ff", *t) for t in uvs)))
        mesh.append(chunk(0x4160, struct.pack("<12f", *([1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0]))))
        tail = [chunk(0x4130, name_bytes(material), struct.pack("<hh", 1, 0))] if material else []
        mesh.append(chunk(0x4120, struct.pack("<h", len(faces)),
                          *(struct.pack("<HHHH", *f, 7) for f in faces), *tail, *sub))
        return chunk(0x4000, name_bytes(name), chunk(0x4100, *mesh))

    def material(name, texture=None):
        pieces = [chunk(0xA000, name_bytes(name))]
        if texture:
            pieces.append(chunk(0xA200, chunk(0xA300, name_bytes(texture))))
        return chunk(0xAFFF, *pieces)

    def model(*edit):
        return chunk(0x4D4D, chunk(0x0002, struct.pack("<i", 3)), chunk(0x3D3D, chunk(0x3D3E, struct.pack("<i", 3)), *edit),
                     chunk(0xB000, chunk(0xB00A, b"\0" * 4)))

    square = ([(0, 0, 0), (1, 0, 0), (1, 2, 0), (0, 2, 0)], [(0, 0), (1, 0), (1, 1), (0, 1)], [(0, 1, 2), (0, 2, 3)])
    yield "square.3ds", model(material("Seats", "RWH0.BMP"), obj("Stand", *square, "Seats"))
    yield "inherit.3ds", model(material("Rock", "rock.bmp"), material("Moss"), obj("A", *square, "Rock"),
                               obj("B", [(5, 5, 5), (6, 5, 5), (5, 6, 5)], [], [(0, 1, 2)]))
    yield "duplicates.3ds", model(obj("Dup", [(0, 0, 0), (0.001, 0, 0), (0, 0, 0), (-0.0, 0, 0)], [(0, 0)] * 4,
                                      [(0, 1, 2), (1, 2, 3)], None, (chunk(0x4150, b"\0" * 8),)))
    yield "empty.3ds", chunk(0x4D4D)
    for made in sorted((HERE.parent / "tests" / "data" / "3ds").glob("*.3ds")):
        yield made.name, made.read_bytes()


def name_bytes(text: str) -> bytes:
    return text.encode("cp1252") + b"\0"


def registry_seeds():
    yield "system.reg", lines("WINE REGISTRY Version 2", "",
                              "[Software\\\\EA SPORTS\\\\FIFA 2003] 1700000000",
                              '"Install Dir"="C:\\\\Program Files\\\\EA SPORTS\\\\FIFA 2003"',
                              '@="default"', '"Count"=dword:0000001f', '"Wide"=str(2):"\\x00e9t\\xe9"', end="\n")
    yield "registry.conf", lines("# where the tools are",
                                 "HKEY_LOCAL_MACHINE\\Software\\EA SPORTS\\FIFA 2003\\Install Dir = /games/fifa2003",
                                 "; the converter", "HKCU\\Software\\OIFTool\\Path=C:\\Tools\\oiftool.exe", end="\n")


def layout_seeds():
    yield "three.json", b"""{"seats.bmp": {"left": 256, "top": 64, "width": 128, "height": 64},
 "roof.bmp": {"left": 0, "top": 0, "width": 128, "height": 64, "mapped": true},
 "grass.bmp": {"left": 0, "top": 480, "width": 32, "height": 32, "mapped": false}}"""
    yield "fractions_and_edges.json", b'{"a": {"left": -0.5, "top": 2.5, "width": 1e6, "height": 0}, "a": {"left": 3, "top": 3, "width": 3, "height": 3}}'
    yield "cp1252_name.json", '{"Trib\u00fcne.bmp": {"left": 0, "top": 0, "width": 8, "height": 8}}'.encode()
    yield "refused_key.json", b'{"a": {"left": 0, "top": 0, "width": 1, "height": 1, "wdth": 2}}'
    yield "empty.json", b"{}"


def journal(name: bytes, changed_at: int, slots, oif: bytes, based_on: int = -1) -> bytes:
    """A recovery journal: tag, time, base, name, the named UV points, the .oif file, checksum."""
    def text(t: bytes) -> bytes:
        return struct.pack("<I", len(t)) + t
    out = b"TMJ1" + struct.pack("<Qi", changed_at, based_on) + text(name) + struct.pack("<I", len(slots))
    for slot, points in slots:
        out += text(slot) + struct.pack("<I", len(points))
        out += b"".join(text(p) + struct.pack("<ff", u, v) for p, u, v in points)
    out += struct.pack("<I", len(oif)) + oif
    h = 2166136261
    for b in out:
        h = ((h ^ b) * 16777619) & 0xFFFFFFFF
    return out + struct.pack("<I", h)


def journal_seeds():
    stadium = with_length(header(1) + part(b"Pitch", b"gras", QUAD, [0, 1, 2, 3]))
    yield "stadium.tmj", journal(b"Highbury", 1795000000, [(b"tp00", [(b"corner", 0.5, 0.25)])], stadium, 3)
    yield "empty.tmj", journal(b"", 0, [], with_length(header(0)))
    yield "cut.tmj", journal(b"Cut", 1, [], stadium)[:-9]


def main():
    for target, seeds in [("fuzz_oif", oif_seeds), ("fuzz_ini", ini_seeds), ("fuzz_number", number_seeds),
                          ("fuzz_rav", rav_seeds), ("fuzz_csv", csv_seeds), ("fuzz_3ds", tds_seeds),
                          ("fuzz_registry", registry_seeds), ("fuzz_layout", layout_seeds),
                          ("fuzz_journal", journal_seeds)]:
        if len(sys.argv) > 1 and target not in sys.argv[1:]:
            continue
        folder = CORPUS / target
        shutil.rmtree(folder, ignore_errors=True)
        folder.mkdir(parents=True)
        for name, data in seeds():
            (folder / name).write_bytes(data)


if __name__ == "__main__":
    main()
