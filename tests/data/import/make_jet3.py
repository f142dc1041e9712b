#!/usr/bin/env python3
"""Writes files/jet3.mdb: a small database of the oldest kind (pages of 2048 bytes, texts in code page 1252), made by
hand from what is known of the format, with the oddities that no other test file has. Usage: make_jet3.py OUT.mdb"""
import struct
import sys

PAGE = 2048
BOOL, INT, LONG, DOUBLE, DATE, TEXT, OLE, MEMO = 1, 3, 4, 7, 8, 10, 11, 12
FIXED_SIZE = {BOOL: 0, INT: 2, LONG: 4, DOUBLE: 8, DATE: 8}
FIXED_FORM = {INT: "<h", LONG: "<i", DOUBLE: "<d", DATE: "<d"}
NORMAL, MOVED_HERE, MOVED, DELETED = 0, 0x8000, 0x4000, 0xC000

pages = [b"", bytes(PAGE)]


def rc4(data):
    key, state, j = b"\xc7\xda\x39\x6b", list(range(256)), 0
    for i in range(256):
        j = (j + state[i] + key[i % 4]) & 255
        state[i], state[j] = state[j], state[i]
    x = y = 0
    out = bytearray()
    for byte in data:
        x = (x + 1) & 255
        y = (y + state[x]) & 255
        state[x], state[y] = state[y], state[x]
        out.append(byte ^ state[(state[x] + state[y]) & 255])
    return bytes(out)


def header():
    plain = bytearray(126)
    struct.pack_into("<H", plain, 0x3C - 0x18, 1252)
    head = b"\x00\x01\x00\x00Standard Jet DB\x00" + b"\x00\x00\x00\x00"
    return (head + rc4(plain)).ljust(PAGE, b"\x00")


def add_page(content):
    pages.append(content)
    return len(pages) - 1


def data_page(owner, rows):
    """rows: (bytes, mark) in order; stored from the end of the page."""
    entries, body, end = b"", b"", PAGE
    for row, mark in rows:
        end -= len(row)
        entries += struct.pack("<H", end | mark)
        body = row + body
    head = b"\x01\x01" + struct.pack("<H", 0) + owner + struct.pack("<H", len(rows)) + entries
    assert len(head) <= end
    return head + bytes(end - len(head)) + body


def pointer(page, row):
    return struct.pack("<I", page << 8 | row)


class Table:
    def __init__(self, name, columns, width=None):
        """columns: (name, type, number); numbers that are left out belong to deleted columns."""
        self.name, self.columns = name, columns
        self.width = width or max(number for _, _, number in columns) + 1
        self.page = add_page(None)
        self.rows = []
        self.offsets, self.indexes = {}, {}
        offset = index = 0
        for column, kind, number in columns:
            if kind in FIXED_SIZE:
                self.offsets[number] = offset
                offset += FIXED_SIZE[kind]
            else:
                self.indexes[number] = index
                index += 1
        self.fixed, self.variable = offset, index

    def row(self, *values, width=None):
        width = width or self.width
        fixed, mask, parts = bytearray(self.fixed), bytearray((width + 7) // 8), [b""] * self.variable
        for (_, kind, number), value in zip(self.columns, values):
            if value is None or value is False or number >= width:
                continue
            mask[number // 8] |= 1 << number % 8
            if kind in FIXED_FORM:
                struct.pack_into(FIXED_FORM[kind], fixed, self.offsets[number], value)
            elif kind != BOOL:
                parts[self.indexes[number]] = value if isinstance(value, bytes) else value.encode("cp1252")
        row, ends = bytes([width]) + fixed, []
        for part in parts:
            ends.append(len(row))
            row += part
        ends.append(len(row))
        if not self.variable:
            return row + mask
        plain = len(row) + len(ends) + 1 + len(mask)
        jumps = (plain - 1 + (plain - 1) // 256) // 256
        row += bytes(end & 255 for end in reversed(ends))
        for jump in range(jumps, 0, -1):
            row += bytes([next((i for i, end in enumerate(ends) if end >= 256 * jump), 255)])
        return row + bytes([self.variable]) + mask

    def add(self, *values, mark=NORMAL, **options):
        self.rows.append((self.row(*values, **options), mark))

    def finish(self, maps, at=None):
        owned = []
        owner = struct.pack("<I", self.page)
        chunk = []
        for row in self.rows:
            if sum(len(r) + 2 for r, _ in chunk + [row]) > PAGE - 12:
                owned.append(add_page(data_page(owner, chunk)))
                chunk = []
            chunk.append(row)
        owned.append(add_page(data_page(owner, chunk)))
        bits = bytearray(128)
        for page in owned:
            bits[page // 8] |= 1 << page % 8
        maps.append(b"\x00" + struct.pack("<I", 0) + bytes(bits))
        self.map = len(maps) - 1

    def define(self, map_page):
        live = sum(1 for _, mark in self.rows if mark in (NORMAL, MOVED))
        body = struct.pack("<IIIBHHHII", 0, live, 0, 0x4E, self.width, self.variable, len(self.columns), 0, 0)
        body += pointer(map_page, self.map) + pointer(map_page, self.map)
        for name, kind, number in self.columns:
            fixed = kind in FIXED_SIZE
            size = FIXED_SIZE.get(kind, 255 if kind == TEXT else 0)
            body += struct.pack("<BHHHHHHBHH", kind, number, self.indexes.get(number, 0), number, 0x409, 1252, 0,
                                3 if fixed else 2, self.offsets.get(number, 0), size)
        for name, _, _ in self.columns:
            body += bytes([len(name)]) + name.encode("cp1252")
        body += b"\xff\xff"
        pages[self.page] = (b"\x02\x01VC" + struct.pack("<I", 0) + body).ljust(PAGE, b"\x00")


def inline_memo(text):
    value = text.encode("cp1252")
    return struct.pack("<III", len(value) | 0x80000000, 0, 0) + value


def one_page_memo(text):
    value = text.encode("cp1252")
    return struct.pack("<III", len(value) | 0x40000000, add_page(data_page(b"LVAL", [(value, 0)])) << 8, 0)


def chained_memo(text):
    value, following = text.encode("cp1252"), pointer(0, 0)
    for start in reversed(range(0, len(value), 2000)):
        page = add_page(data_page(b"LVAL", [(following + value[start:start + 2000], 0)]))
        following = pointer(page, 0)
    return struct.pack("<I", len(value)) + following + bytes(4)


objects = Table("MSysObjects", [("Id", LONG, 0), ("Name", TEXT, 1), ("Type", INT, 2), ("Flags", LONG, 3),
                                ("LvProp", OLE, 4)])
assert objects.page == 2
maps = []

# Column 2 has been deleted; column 4 was added when the first two rows were there already.
groups = Table("tblGroup", [("Group_ID", LONG, 0), ("Group_Label", TEXT, 1), ("Group_Desc", TEXT, 3),
                            ("Group_Icon", INT, 4)])
groups.add(1, "Rechenzentrum Köln", None, None, width=4)
groups.add(2, "Deleted", "x", None, width=4, mark=DELETED)
groups.add(7, "Dépôt €", "", 16)
moved = groups.row(9, "Grown out of its page", "y" * 200, 15)
moved_page = add_page(data_page(struct.pack("<I", groups.page), [(moved, MOVED_HERE)]))
groups.rows.append((pointer(moved_page, 0), MOVED))

devices = Table("tblDevices", [("Device_ID", LONG, 0), ("Group_ID", LONG, 1), ("Device_Name", TEXT, 2),
                               ("Device_Alias", TEXT, 3), ("Device_Desc", TEXT, 4), ("Device_Status", TEXT, 5),
                               ("Device_Icon", INT, 6), ("HTML_Output", BOOL, 7), ("MSAgent_Referr_Device", BOOL, 8),
                               ("MSAgent_Pronounce_Device", BOOL, 9)])
for i in range(40):
    devices.add(i + 1, 1, "host%d" % i, "a" * (5 * i), "b" * (6 * i), "Not checked", 2, i % 2 == 0, False, i % 3 == 0)

events = Table("tblEventLog", [("Device_ID", LONG, 0), ("Port_ID", LONG, 1), ("Event_Icon", INT, 2),
                               ("Event_Date", DATE, 3), ("Event_Type", TEXT, 4), ("Event", TEXT, 5)])
for i, days in enumerate([-1.25, 0.5, 2958465 + 86399 / 86400, -657434.0, 36925 + 14706 / 86400]):
    events.add(i, 0, 5, days, "Message", "it's event %d" % i)
for i in range(5, 300):
    events.add(i, 0, 5, 36925.0 + i, "Message", "event %d" % i)

scripts = Table("tblScripts", [("Script_Event", TEXT, 0), ("Script", MEMO, 1)])
scripts.add("inline", inline_memo("Sub Main\r\n'ä\r\nEnd Sub"))
scripts.add("page", one_page_memo("p" * 1500))
scripts.add("chain", chained_memo("".join("line %d\r\n" % i for i in range(1000))))
scripts.add("empty", inline_memo(""))
scripts.add("none", None)

tables = [groups, devices, events, scripts]
for table in tables:
    table.finish(maps)
    objects.add(table.page, table.name, 1, 0, None)
objects.add(2, "MSysObjects", 1, -2147483648, None)
objects.add(0x1000, "qryOld", 5, 0, None)
objects.finish(maps)
map_page = add_page(data_page(struct.pack("<I", 0), [(row, 0) for row in maps]))
for table in [objects] + tables:
    table.define(map_page)
pages[0] = header()
assert all(len(page) == PAGE for page in pages)
with open(sys.argv[1], "wb") as out:
    out.write(b"".join(pages))
