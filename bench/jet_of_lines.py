"""Makes a larger Access database of a small one, by repeating the pages that hold its lines."""

import struct

PAGE = 4096
DEFINITION, DATA, MAP = 2, 1, 5  # kinds of pages, in their first byte
ROW_COUNT = 16  # in a definition: the number of rows
USAGE_MAP = 55  # in a definition: where the map of its pages is, row and page
ROWS = 14  # in a data page: where each row begins, two bytes each
OFFSET_BITS = 0x1FFF


def whole(page, offset):
    return struct.unpack_from("<I", page, offset)[0]


def repeat_lines(source, target, least):
    """Writes a database of at least so many lines and returns their number."""
    with open(source, "rb") as file:
        data = file.read()
    pages = [bytearray(data[at : at + PAGE]) for at in range(0, len(data), PAGE)]
    column = "eng_raddef".encode("utf-16-le")
    table = next(i for i, page in enumerate(pages) if page[0] == DEFINITION and column in page)
    definition = pages[table]
    own = [i for i, page in enumerate(pages) if page[0] == DATA and whole(page, 4) == table]
    times = -(-least // whole(definition, ROW_COUNT))
    lines = times * whole(definition, ROW_COUNT)
    struct.pack_into("<I", definition, ROW_COUNT, lines)

    copies = [bytearray(pages[i]) for _ in range(times - 1) for i in own]
    own += range(len(pages), len(pages) + len(copies))
    bits = bytearray(PAGE - 4)
    for i in own:
        bits[i // 8] |= 1 << i % 8
    pages += copies
    pages.append(bytearray(struct.pack("<BBH", MAP, 1, 0)) + bits)

    # The table's map becomes one of the kind that names a page of bits.
    place = whole(definition, USAGE_MAP)
    map_page = pages[place >> 8]
    row = struct.unpack_from("<H", map_page, ROWS + 2 * (place & 0xFF))[0] & OFFSET_BITS
    struct.pack_into("<BI", map_page, row, 1, len(pages) - 1)
    with open(target, "wb") as file:
        file.write(b"".join(pages))
    return lines
