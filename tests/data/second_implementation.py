#!/usr/bin/python3
"""A second implementation of the file format, made from docs/format.md alone, with other libraries
(Debian: python3-cryptography, python3-argon2). It holds a file in memory and is not made for use;
it makes the known answers of this folder and checks what the program writes.

    second_implementation.py make                  writes *.zr5 and known_answers.txt here
    second_implementation.py check FOLDER KEYTEXT  each NAME.zr5 there is NAME, with the typed key
    second_implementation.py example               prints the worked examples of docs/format.md
"""

import functools
import hashlib
import hmac
import sys
import unicodedata
from pathlib import Path
from typing import NamedTuple, Optional

import argon2.low_level
from cryptography.exceptions import InvalidTag
from cryptography.hazmat.primitives.ciphers.aead import AESGCM
from cryptography.hazmat.primitives.hashes import SHA256
from cryptography.hazmat.primitives.kdf.hkdf import HKDF

MAGIC = b"ZR5\x01"
HEADER, SALTS_AND_LENGTH, BLOCK, TAG = 92, 60, 65536, 16
NO_BREAK = "\u00a0\u2007\u202f"
UNDEFINED = "\x81\x8d\x8f\x90\x9d"  # in code page 1252: stand for themselves


# From the key to bytes

def canonical(data):
    """Drops what is 20 or below and makes capitals."""
    def capital(byte):
        if 0x61 <= byte <= 0x7A or 0xE0 <= byte <= 0xFE and byte != 0xF7:
            return byte - 0x20
        return {0x9A: 0x8A, 0x9C: 0x8C, 0x9E: 0x8E, 0xFF: 0x9F}.get(byte, byte)
    return bytes(capital(byte) for byte in data if byte > 0x20)


def key_from_typed(text):
    """ValueError: too short, or with a character that cannot be part of a key."""
    key = canonical(b"".join(
        b" " if c in NO_BREAK else bytes([ord(c)]) if c in UNDEFINED else c.encode("cp1252")
        for c in unicodedata.normalize("NFC", text)[:64]))
    if len(key) < 16:
        raise ValueError("too short")
    return key


def key_from_keyfile(content):
    """ValueError: not suitable."""
    taken = content[:64]
    if sum(byte > 0x20 for byte in taken) < 16:
        raise ValueError("not suitable")
    inner = len(taken.rstrip(b"\0"))
    return canonical(byte or 128 - place for place, byte in enumerate(taken[:inner], 1))


# Keys of a file

@functools.lru_cache(maxsize=None)
def master_key(key, run_salt):
    return argon2.low_level.hash_secret_raw(
        key, run_salt, time_cost=3, memory_cost=262144, parallelism=1, hash_len=32,
        type=argon2.low_level.Type.ID, version=0x13)


def derive(key, start, label):
    """A key from the first 60 bytes of a header."""
    return HKDF(SHA256(), 32, salt=start[20:52], info=label).derive(master_key(key, start[4:20]))


def header_key(key, start):
    return derive(key, start, b"ZR5 v1 header key")


def block_key(key, start):
    return derive(key, start, b"ZR5 v1 block key" + start)


def nonce(block):
    return block.to_bytes(12, "big")


def header(key, run_salt, file_salt, length):
    start = MAGIC + run_salt + file_salt + length.to_bytes(8, "big")
    return start + hmac.digest(header_key(key, start), start, "sha256")


# Whole files

def encrypt(key, run_salt, file_salt, plaintext):
    head = header(key, run_salt, file_salt, len(plaintext))
    cipher = AESGCM(block_key(key, head[:SALTS_AND_LENGTH]))
    blocks = [cipher.encrypt(nonce(i), plaintext[at:at + BLOCK], None)
              for i, at in enumerate(range(0, len(plaintext), BLOCK))]
    return head + b"".join(blocks) + head


class Result(NamedTuple):
    code: int                           # 0 whole; -8; -18; -21 to -29
    plaintext: Optional[bytes] = None   # what comes out, if anything
    lost: tuple = ()                    # (first, last) of each range of zeros, counted from 1
    missing: int = 0                    # bytes of the plaintext that do not come out, at its end
    ends: str = ""                      # "end:+5" too much, "end:-5" cut, "end:0" header; "front:…"

    def details(self):
        words = [f"L{first}-{last}" for first, last in self.lost]
        words += [f"missing:{self.missing}"] * (self.missing > 0) + [self.ends] * (self.ends != "")
        return ",".join(words) or "-"


def fits(key, head):
    if len(head) < HEADER or head[:4] != MAGIC:
        return False
    start, length = head[:SALTS_AND_LENGTH], int.from_bytes(head[52:60], "big")
    if not 1 <= length <= 2**62:
        return False
    return hmac.compare_digest(hmac.digest(header_key(key, start), start, "sha256"), head[60:])


def decrypt(key, file):
    in_front, at_end = file[:HEADER], file[-HEADER:]
    from_front = fits(key, in_front)
    if not from_front and (at_end == in_front or not fits(key, at_end)):
        return Result(-8)
    start = (in_front if from_front else at_end)[:SALTS_AND_LENGTH]
    length = int.from_bytes(start[52:], "big")
    count = -(-length // BLOCK)
    blocks_length = length + TAG * count
    surplus = len(file) - blocks_length - 2 * HEADER
    first_block = HEADER if from_front else len(file) - HEADER - blocks_length
    cipher = AESGCM(block_key(key, start))

    pieces, lost, unopened = [], [], 0
    for i in range(count):
        size = min(BLOCK, length - i * BLOCK)
        at = first_block + i * (BLOCK + TAG)
        if at + size + TAG > len(file):
            break
        try:
            if at < 0:
                raise InvalidTag
            pieces.append(cipher.decrypt(nonce(i), file[at:at + size + TAG], None))
        except InvalidTag:
            pieces.append(bytes(size))
            unopened += 1
            if lost and lost[-1][1] == i * BLOCK:
                lost[-1] = (lost[-1][0], i * BLOCK + size)
            else:
                lost.append((i * BLOCK + 1, i * BLOCK + size))
    if unopened == len(pieces):
        return Result(-8)

    plaintext = b"".join(pieces)
    side, ends = "end" if from_front else "front", ""
    if surplus != 0:
        ends = f"{side}:{surplus:+d}"
    elif in_front != at_end:
        ends = f"{side}:0"
    code = -18 if ends else -20 - min(unopened, 9) if unopened else 0
    return Result(code, plaintext, tuple(lost), length - len(plaintext), ends)


# Known answers

HERE = Path(__file__).parent
RUN_SALT = b"zr5 known answer"
TABLE_HEAD = """\
# Every file of this folder, the key, and what decrypting it must give: the result code, length and
# MD5 digest of the plaintext that comes out ("-": no output is made), and details ("-": none):
#   L1-65536   these bytes of the plaintext are lost; zeros stand in their place
#   missing:N  N bytes at the end of the plaintext do not come out
#   end:+5     the file has 5 bytes too much; -5: too few; 0: right length, damaged header there
#   front:+5   the same at the beginning
# See README.md.
#
# file                          key     code   bytes  MD5                               details
"""


def counted_lines(length):
    lines = b"".join(b"%d\n" % i for i in range(1, 40001))
    return lines[:length]


def file_salt(name):
    return name.encode().ljust(32, b".")


def changed(file, *places):
    """One bit changed at each place; places below 0 count from the end."""
    out = bytearray(file)
    for place in places:
        out[place] ^= 1
    return bytes(out)


def known_files(keys):
    def sealed(name, length, key="typed"):
        return encrypt(keys[key], RUN_SALT, file_salt(name), counted_lines(length))

    files = {str(n): sealed(str(n), n) for n in (1, 15, 16, 65535, 65536, 65537, 131073)}
    files["keyfile"] = sealed("keyfile", 1000, "keyfile")
    one, two, three = files["16"], files["65537"], files["131073"]
    other = sealed("header-of-another", 16)
    head, step = one[:HEADER], BLOCK + TAG
    first, second = three[HEADER:HEADER + step], three[HEADER + step:HEADER + 2 * step]
    for version in (0, 2):
        wrong = b"ZR5%c" % version + head[4:]
        files[f"version-{version}"] = wrong + one[HEADER:-HEADER] + wrong
    parts = {"magic": 0, "run-salt": 4, "file-salt": 20, "length": 59, "header-tag": 60}
    for part, place in parts.items():
        files[f"front-damaged-{part}"] = changed(one, place)
    for part in ("run-salt", "length"):
        files[f"end-damaged-{part}"] = changed(one, parts[part] - HEADER)
    files |= {
        "both-headers-damaged": changed(one, 60, -1),
        "damaged-block": changed(two, HEADER + 1000),
        "damaged-only-block": changed(one, HEADER + 3),
        "damaged-block-tag": changed(two, -HEADER - 1),
        "damaged-front-and-block": changed(two, 60, HEADER + 1000),
        "cut-in-header": one[:-40],
        "cut-header": one[:-HEADER],
        "cut-in-block": two[:-HEADER - 9],
        "cut-in-only-block": one[:-HEADER - 9],
        "cut-after-block": two[:HEADER + step],
        "cut-to-92": one[:92],
        "cut-to-91": one[:91],
        "cut-to-50": one[:50],
        "block-left-out": three[:HEADER + step] + three[HEADER + 2 * step:],
        "lost-first-92": one[92:],
        "lost-first-70000": three[70000:],
        "lost-first-byte": one[1:],
        "extended-5": one + b"12345",
        "extended-300": one + counted_lines(300),
        "extended-copy": one + one,
        "preceded-100": counted_lines(100) + one,
        "swapped": three[:HEADER] + second + first + three[HEADER + 2 * step:],
        "spliced": two[:HEADER] + first + two[HEADER + step:],
        "front-of-another": other[:HEADER] + one[HEADER:],
        "end-of-another": one[:-HEADER] + other[-HEADER:],
        "damaged-front-extended-5": changed(one, 60) + b"12345",
        "damaged-block-extended-5": changed(two, HEADER + 1000) + b"12345",
        "damaged-block-cut": changed(three, HEADER + 1000)[:-HEADER - 9],
        "headers-only": head + head,
        "foreign": counted_lines(500),
        "empty": b"",
    }
    mine, others = (sealed("two-keys", 65537, key) for key in ("typed", "other"))
    files["two-keys"] = mine[:HEADER + step] + others[HEADER + step:]
    return files


def make():
    keys = {"typed": key_from_typed("Grüße aus Köln, 2026!"),
            "other": key_from_typed("Grüße aus Köln, 2027!"),
            "keyfile": key_from_keyfile((HERE / "keyfile.key").read_bytes())}
    files = known_files(keys)
    rows = [(name, "keyfile" if name == "keyfile" else "typed") for name in files]
    rows += [("16", "other"), ("keyfile", "typed"), ("two-keys", "other")]
    for old in HERE.glob("*.zr5"):
        old.unlink()
    table = TABLE_HEAD
    for name, file in files.items():
        (HERE / f"{name}.zr5").write_bytes(file)
    for name, key in rows:
        result = decrypt(keys[key], files[name])
        plain = result.plaintext
        digest = "-" if plain is None else hashlib.md5(plain).hexdigest()
        table += (f"{name + '.zr5':31} {key:7} {result.code:4} {len(plain or b''):7}  "
                  f"{digest:32}  {result.details()}\n")
    (HERE / "known_answers.txt").write_text(table, encoding="utf-8")


# Checking what the program wrote

def check(folder, text):
    """The exit code: 0 if there are files, all in pairs, and each pair agrees."""
    key = key_from_typed(text)
    names = {path.name for path in Path(folder).iterdir() if path.is_file()}
    sealed = {name for name in names if name.endswith(".zr5") and name[:-4] in names}
    wrong = [f"{name}: has no partner" for name in names
             if name not in sealed and name + ".zr5" not in sealed]
    for name in sealed:
        result = decrypt(key, Path(folder, name).read_bytes())
        if result.code != 0:
            wrong.append(f"{name}: {result.code} {result.details()}")
        elif result.plaintext != Path(folder, name[:-4]).read_bytes():
            wrong.append(f"{name}: whole, but another plaintext")
    if not sealed:
        wrong.append("no pair")
    print(*sorted(wrong), sep="\n", end="\n" if wrong else "")
    return 1 if wrong else 0


# Worked examples

EXAMPLE_KEYFILE = bytes.fromhex("0061420a00e9f7ff9c0020a0dfb5837a317fc10000fe2e819ed06d0540e00000")


def example():
    run_salt, salt = bytes(range(0x30, 0x40)), bytes(range(0x40, 0x60))

    def show(name, data):
        print(f"    {name:15}{data.hex() if isinstance(data, bytes) else data}")

    def dump(file):
        for at in range(0, len(file), 16):
            print(f"    {at:04x}  {file[at:at + 16].hex(' ', -4)}")

    def show_keys(key, start):
        show("master", master_key(key, run_salt))
        show("header key", header_key(key, start))
        show("block key", block_key(key, start))

    print("One block")
    key = key_from_typed("correct horse battery staple")
    file = encrypt(key, run_salt, salt, b"Hello, world.\n")
    show("key", key)
    show_keys(key, file[:SALTS_AND_LENGTH])
    show("nonce", nonce(0))
    show("length", len(file))
    dump(file)

    print("Several blocks, typed with accents")
    for form in ("NFC", "NFD"):
        text = unicodedata.normalize(form, "Grüße aus Köln, 2026!")
        show(form, text.encode())
        key = key_from_typed(text)
        show("key", key)
    file = encrypt(key, run_salt, salt, counted_lines(131073))
    show_keys(key, file[:SALTS_AND_LENGTH])
    show("header", "")
    dump(file[:HEADER])
    for i, at in enumerate(range(HEADER, len(file) - HEADER, BLOCK + TAG)):
        block = file[at:min(at + BLOCK + TAG, len(file) - HEADER)]
        show(f"block {i}", f"at {at}, {len(block) - TAG} bytes")
        show("first, last", f"{block[:-TAG][:16].hex()} {block[:-TAG][-16:].hex()}")
        show("tag", block[-TAG:])
    show("length", len(file))
    show("SHA-256", hashlib.sha256(file).digest())

    print("Keyfile")
    show("keyfile", EXAMPLE_KEYFILE)
    key = key_from_keyfile(EXAMPLE_KEYFILE)
    show("key", key)
    show("master", master_key(key, run_salt))


if __name__ == "__main__":
    if sys.argv[1:] == ["make"]:
        make()
    elif len(sys.argv) == 4 and sys.argv[1] == "check":
        sys.exit(check(sys.argv[2], sys.argv[3]))
    elif sys.argv[1:] == ["example"]:
        example()
    else:
        sys.exit(__doc__)
