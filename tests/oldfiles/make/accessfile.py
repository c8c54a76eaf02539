"""Writes recipe files in the Access format for tests: Jet 3 (Access 97), Jet 4 (2000 to 2003) and
ACE (2007 and later). Writes what a reader of tables needs and nothing else: no indexes, queries or
rights. Can also write what the format allows and only damage or age produces."""

import dataclasses
import struct

YES_NO, BYTE, INTEGER, LONG, MONEY, SINGLE, DOUBLE, DATE = range(1, 9)
TEXT, OLE, MEMO, DECIMAL, BIG = 10, 11, 12, 16, 19
SIZES = {BYTE: 1, INTEGER: 2, LONG: 4, MONEY: 8, SINGLE: 4, DOUBLE: 8, DATE: 8, DECIMAL: 17, BIG: 8}
CODES = {BYTE: "<B", INTEGER: "<h", LONG: "<i", MONEY: "<q", SINGLE: "<f", DOUBLE: "<d",
         DATE: "<d", BIG: "<q"}

DATA, DEFINITION, USAGE_MAP = 1, 2, 5
MOVED, BODY, DELETED = 0x4000, 0x8000, 0xC000
LONG_VALUES = struct.unpack("<I", b"LVAL")[0]
HEADER_KEY = bytes((0xC7, 0xDA, 0x39, 0x6B))


@dataclasses.dataclass
class Format:
    signature: bytes
    version: int
    page_size: int

    @property
    def is_jet3(self):
        return self.version == 0

    def pick(self, jet3, jet4):
        return jet3 if self.is_jet3 else jet4

    @property
    def room(self):
        """The bytes of a data page for rows and their places."""
        return self.page_size - self.pick(10, 14)


FORMATS = {
    "jet3": Format(b"Standard Jet DB", 0, 2048),
    "jet4": Format(b"Standard Jet DB", 1, 4096),
    "ace": Format(b"Standard ACE DB", 3, 4096),
}


@dataclasses.dataclass
class Column:
    name: str
    type: int
    size: int = 0  # of a text among the fixed values, in bytes
    scale: int = 0
    fixed: bool = None  # by default, all but texts and long values are
    calculated: bool = False
    code_page: int = 0

    def __post_init__(self):
        if self.fixed is None:
            self.fixed = self.type in SIZES or self.type == YES_NO
        self.size = self.size or SIZES.get(self.type, 0)


@dataclasses.dataclass
class Table:
    """A row is a list with a value for each column; None is null. A row with fewer values was written
    before the other columns were added. Bytes are stored as they are. A row can also be Moved,
    Deleted or Raw."""

    name: str
    columns: list
    rows: list
    type: int = 1  # in the catalog: 1 table, 4 and 6 linked, 5 query
    flags: int = 0
    stated_rows: int = None
    counter: int = None
    map_kind: str = "direct"  # "late" begins at the first page, "indirect" is on pages of its own
    reversed_records: bool = False
    owner: int = None  # that the pages of rows name instead of the table
    most_slots: int = 255  # on a page of rows
    page_kind: int = None  # that the pages of rows name instead of DATA
    given_up_page: bool = False  # one that still has rows and names the table
    also_mapped: tuple = ()  # pages that are not the table's
    gap: int = 0  # pages before the rows


@dataclasses.dataclass
class Moved:
    values: list
    pointer: object = None  # instead of the body's: a pointer, "itself", or "last" for that before


@dataclasses.dataclass
class Deleted:
    values: list


@dataclasses.dataclass
class Raw:
    data: bytes
    place: int = None  # instead of the place where it is


@dataclasses.dataclass
class LongValue:
    """A long text stored in this way, whatever its length is: "inline", "row" or "pieces". With
    "last", it points to the row of a page of long values that was written last."""

    data: str
    kind: str
    piece: int = 100
    length: int = None  # as it is stored
    loop: bool = False  # the last piece leads to the first


def rc4(key, data):
    state, j = list(range(256)), 0
    for i in range(256):
        j = (j + state[i] + key[i % len(key)]) & 255
        state[i], state[j] = state[j], state[i]
    out, j = bytearray(), 0
    for n, byte in enumerate(data):
        i = (n + 1) & 255
        j = (j + state[i]) & 255
        state[i], state[j] = state[j], state[i]
        out.append(byte ^ state[(state[i] + state[j]) & 255])
    return bytes(out)


class AccessFile:
    def __init__(self, name, version=None, code_page=1252, stated_code_page=None, key=0,
                 encrypted=False, password="", compress=False, signature=None,
                 catalog_rows=()):
        self.format = FORMATS[name]
        self.catalog_rows = catalog_rows  # further ones
        self.signature = signature or self.format.signature
        self.version = self.format.version if version is None else version
        self.code_page, self.stated_code_page = code_page, stated_code_page or code_page
        self.key, self.encrypted = key, encrypted
        self.password, self.compress = password, compress
        self.pages = [b"", b""]  # the header and the map of free pages, which nobody reads here
        self.long_rows, self.long_size = [], 0
        self.long_page = None

    # Pages

    def new_page(self):
        self.pages.append(b"")
        return len(self.pages) - 1

    def data_page(self, owner, slots):
        """A data page of rows, each with the flags of its place."""
        f = self.format
        end, places, data = f.page_size, [], []
        for row, flags in slots:
            raw = row if isinstance(row, Raw) else Raw(row)
            end -= len(raw.data)
            places.append((end if raw.place is None else raw.place) | flags)
            data.append(raw.data)
        head = struct.pack("<BBHI", DATA, 1, 0, owner) + f.pick(b"", bytes(4))
        head += struct.pack(f"<H{len(places)}H", len(places), *places)
        assert len(head) <= end
        return head + bytes(end - len(head)) + b"".join(reversed(data))

    def usage_map(self, pages, kind):
        """Writes the map of these pages and returns the pointer to it."""
        f, first = self.format, 0
        size = f.pick(128, 64)  # of the bits in the row
        if kind == "indirect" or kind == "direct" and max(pages) >= size * 8:
            bits = (f.page_size - 4) * 8
            parts = [0] * 17
            for part in sorted({page // bits for page in pages}):
                own = [page - part * bits for page in pages if page // bits == part]
                parts[part] = self.new_page()
                self.pages[parts[part]] = bytes((USAGE_MAP, 1, 0, 0)) + bitmap(own, bits // 8)
            row = b"\1" + struct.pack("<17I", *parts)
        else:
            if kind == "late" and pages:
                first = min(pages) // 8 * 8
            row = b"\0" + struct.pack("<I", first) + bitmap([page - first for page in pages], size)
        number = self.new_page()
        self.pages[number] = self.data_page(0, [(b"\0" * 69, 0), (row, 0)])
        return number << 8 | 1

    # Values

    def text(self, value, column):
        if self.format.is_jet3:
            return value.encode(f"cp{column.code_page or self.code_page}", "replace")
        plain = value.encode("utf-16-le")
        if not self.compress or 0 in plain[::2]:
            return plain
        out, is_one_byte = bytearray(b"\xff\xfe"), True
        for low, high in zip(plain[::2], plain[1::2]):
            if (high == 0) != is_one_byte:
                out.append(0)
                is_one_byte = not is_one_byte
            out += bytes((low,)) if is_one_byte else bytes((low, high))
        return bytes(out)

    def long_row(self, data):
        """Stores a row on a page of long values and returns the pointer to it."""
        if self.long_page is None or self.long_size + len(data) + 2 > self.format.room \
                or len(self.long_rows) == 255:
            self.flush_long_rows()
            self.long_page = self.new_page()
        self.long_rows.append((data, 0))
        self.long_size += len(data) + 2
        return self.long_page << 8 | len(self.long_rows) - 1

    def flush_long_rows(self):
        if self.long_page is not None:
            self.pages[self.long_page] = self.data_page(LONG_VALUES, self.long_rows)
        self.long_rows, self.long_size, self.long_page = [], 0, None

    def long_value(self, value):
        largest = self.format.room - 6  # of one piece
        if isinstance(value, bytes):
            kind = "inline" if len(value) <= 64 else "row" if len(value) <= largest else "pieces"
            value = LongValue(value, kind, largest)
        data = value.data
        length = len(data) if value.length is None else value.length
        if value.kind == "inline":
            return struct.pack("<III", length | 2 << 30, 0, 0) + data
        if value.kind == "row":
            return struct.pack("<III", length | 1 << 30, self.long_row(data), 0)
        if value.kind == "last":
            last = self.long_page << 8 | len(self.long_rows) - 1
            return struct.pack("<III", length | 1 << 30, last, 0)
        if value.loop:
            return struct.pack("<III", length, self.looped_rows(data), 0)
        pointer = 0
        for at in reversed(range(0, len(data), value.piece)):
            pointer = self.long_row(struct.pack("<I", pointer) + data[at:at + value.piece])
        return struct.pack("<III", length, pointer, 0)

    def looped_rows(self, data):
        self.flush_long_rows()
        pointer = self.new_page() << 8
        self.pages[-1] = self.data_page(LONG_VALUES, [(struct.pack("<I", pointer) + data, 0)])
        return pointer

    def stored(self, column, value):
        if isinstance(value, str):
            value = self.text(value, column)
        if isinstance(value, LongValue):
            value = dataclasses.replace(value, data=self.text(value.data, column))
        if column.type in (MEMO, OLE):
            return self.long_value(value)
        if isinstance(value, bytes):
            return value
        if column.type == DECIMAL:
            parts = [abs(value) >> shift & 0xFFFFFFFF for shift in (96, 64, 32, 0)]
            return struct.pack("<B4I", 0x80 if value < 0 else 0, *parts)
        if column.type == MONEY:
            value = round(value * 10000)
        return struct.pack(CODES[column.type], value)

    # Rows

    def row(self, columns, values):
        f = self.format
        mask = bytearray((len(values) + 7) // 8)
        if len(values) % 8:  # nothing clears the bits of columns that do not exist
            mask[-1] = 0xFF << len(values) % 8 & 0xFF
        fixed, variable = bytearray(), []
        for number, (column, value) in enumerate(zip(columns, values)):
            has_value = value if column.type == YES_NO else value is not None
            if has_value:
                mask[number // 8] |= 1 << number % 8
            if column.type == YES_NO:
                continue
            data = self.stored(column, value) if has_value else b""
            if column.fixed:
                fixed += data.ljust(column.size, b"\0")
            else:
                variable.append(data)
        out = f.pick(bytes((len(values),)), struct.pack("<H", len(values))) + fixed
        places = []
        for data in variable:
            places.append(len(out))
            out += data
        places.append(len(out))
        if not f.is_jet3:
            out += struct.pack(f"<{len(places)}H", *reversed(places))
            return bytes(out + struct.pack("<H", len(variable)) + mask)
        # A place is one byte; a jump names the first value beyond another 256 bytes. One that no
        # value needs means nothing.
        plain, jumps = len(out) + len(places) + 1 + len(mask), 0
        while (plain + jumps - 1) // 256 > jumps:
            jumps += 1
        table = [next((i for i, place in enumerate(places) if place >= (jump + 1) * 256), 0)
                 for jump in range(jumps)]
        out += bytes(place & 255 for place in reversed(places)) + bytes(reversed(table))
        return bytes(out + bytes((len(variable),)) + mask)

    def write_rows(self, table, definition):
        """Returns the pages with the table's rows."""
        pages, bodies = [([], 0)], []

        def place(data, flags, row=None):
            slots, size = pages[-1]
            length = len(data.data if isinstance(data, Raw) else data) + 2
            if size + length > self.format.room or len(slots) == table.most_slots:
                pages.append(([], 0))
                slots, size = pages[-1]
            slots.append((data, flags))
            pages[-1] = (slots, size + length)
            if row is not None:
                bodies.append((row, len(pages) - 1, len(slots) - 1))

        moved = []
        for row in table.rows:
            if isinstance(row, Raw):
                place(row, 0)
            elif isinstance(row, Deleted):
                place(self.row(table.columns, row.values), DELETED)
            elif isinstance(row, Moved):
                moved.append((row, len(pages) - 1, len(pages[-1][0])))
                place(bytes(4), MOVED)
            else:
                place(self.row(table.columns, row), 0)
        pages.append(([], 0))
        for row, page, slot in moved:
            place(self.row(table.columns, row.values), BODY, (row, page, slot))
        self.flush_long_rows()
        self.pages += [None] * table.gap
        numbers = [self.new_page() for _ in pages]
        pointer = 0
        for (row, page, slot), body_page, body_slot in bodies:
            if row.pointer == "itself":
                pointer = numbers[page] << 8 | slot
            elif row.pointer is None:
                pointer = numbers[body_page] << 8 | body_slot
            elif row.pointer != "last":
                pointer = row.pointer
            pages[page][0][slot] = (struct.pack("<I", pointer), MOVED)
        for number, (slots, _) in zip(numbers, pages):
            page = self.data_page(table.owner or definition, slots)
            self.pages[number] = bytes((table.page_kind or DATA,)) + page[1:]
        if table.given_up_page:
            self.pages[self.new_page()] = self.data_page(definition, pages[0][0])
        return numbers

    # Tables

    def write_table(self, table, definition):
        pages = self.write_rows(table, definition)
        table_map = self.usage_map([*pages, *table.also_mapped], table.map_kind)
        live = [row for row in table.rows if not isinstance(row, Deleted)]
        stated = len(live) if table.stated_rows is None else table.stated_rows
        counter = table.counter
        if counter is None:
            keys = [row[0] for row in live if isinstance(row, list) and isinstance(row[0], int)]
            counter = max(keys, default=0)
        self.write_definition(table, definition, stated, counter & 0xFFFFFFFF, table_map)

    def write_definition(self, table, first, stated, counter, table_map):
        f, offset, variable = self.format, 0, 0
        records, names = [], []
        for number, column in enumerate(table.columns):
            records.append(self.column_record(column, number, variable, offset))
            names.append(self.name(column.name))
            if column.fixed:
                offset += column.size
            else:
                variable += 1
        if table.reversed_records:
            records.reverse()
            names.reverse()
        count = len(table.columns)
        head = struct.pack("<BHHHIIII", 0x4E, count, variable, count, 0, 1, table_map, table_map)
        if f.is_jet3:
            out = struct.pack("<III", 0, stated, counter) + head
        else:
            out = struct.pack("<IIIIIIII", 0, 0, stated, counter, *[0] * 4) + head
        out += bytes(f.pick(8, 12))  # one index
        out += b"".join(records + names) + b"\xff\xff"
        number = first
        while True:
            piece, out = out[:f.page_size - 8], out[f.page_size - 8:]
            following = self.new_page() if out else 0
            self.pages[number] = struct.pack("<BBHI", DEFINITION, 1, 0, following) + piece
            if not out:
                break
            number = following

    def column_record(self, column, number, variable, offset):
        flags = 2 | column.fixed
        if self.format.is_jet3:
            return struct.pack("<BHHHHHHBHH", column.type, number, variable, number, 0, 0,
                               column.code_page, flags, offset, column.size)
        more = 0xC0 if column.calculated else 1 if self.compress else 0
        return struct.pack("<BIHHHBBHBBIHH", column.type, 0, number, variable, number, 0,
                           column.scale, 0, flags, more, 0, offset, column.size)

    def name(self, name):
        if self.format.is_jet3:
            data = name.encode("ascii")
            return bytes((len(data),)) + data
        data = name.encode("utf-16-le")
        return struct.pack("<H", len(data)) + data

    # The file

    def save(self, path, tables):
        catalog = Table("MSysObjects", [Column("Id", LONG), Column("Name", TEXT),
                                        Column("Type", INTEGER), Column("Flags", LONG)], [])
        places = [self.new_page() for _ in [catalog, *tables]]
        catalog.rows = [[places[0], "MSysObjects", 1, -0x80000000]]
        catalog.rows += [[0x0F000001, "Recipes", -32768, 0]]  # a form of this name
        catalog.rows += [[place, table.name, table.type, table.flags]
                         for place, table in zip(places[1:], tables)]
        catalog.rows += self.catalog_rows
        for table, place in zip([catalog, *tables], places):
            self.write_table(table, place)
        self.pages[0] = self.header()
        size = self.format.page_size
        with open(path, "wb") as out:
            for number, page in enumerate(self.pages):
                if page is None:  # never written: leaves a hole
                    continue
                page = page.ljust(size, b"\0")
                if self.encrypted and number > 0:
                    page = rc4(struct.pack("<I", self.key ^ number), page)
                out.seek(number * size)
                out.write(page)

    def header(self):
        f = self.format
        page = bytearray(f.page_size)
        page[0:20] = b"\0\1\0\0" + self.signature + b"\0"
        page[0x14] = self.version
        clear = bytearray(f.pick(126, 128))
        struct.pack_into("<HI", clear, 0x3C - 0x18, self.stated_code_page, self.key)
        password = self.password.encode("ascii" if f.is_jet3 else "utf-16-le")
        clear[0x42 - 0x18:0x42 - 0x18 + len(password)] = password
        page[0x18:0x18 + len(clear)] = rc4(HEADER_KEY, clear)
        return bytes(page)


def bitmap(numbers, size):
    bits = bytearray(size)
    for number in numbers:
        bits[number // 8] |= 1 << number % 8
    return bytes(bits)
