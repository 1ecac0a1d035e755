#!/usr/bin/env python3
"""Writes the seed inputs of the fuzz targets into tests/fuzz/seeds/<target>/, in each target's
input format, from the golden frames and records of the unit tests. Run it after changing a
target's input format; the seeds are kept in git."""
import os
import re
import struct

here = os.path.dirname(os.path.abspath(__file__))
seeds = {}


def add(target, name, data):
    seeds.setdefault(target, []).append((name, bytes(data)))


def sealed(b):
    return list(b) + [sum(b) & 0xFF]


# Keypad-1 and WTX-1200A frames; the target reads: model, keypad id, key flags, menu state,
# outputs, then ops (op < 0xE0: a chunk of (op & 31) + 1 bytes, (op >> 5) % 4 + 1 loop turns).
def chunk(b, turns=1):
    return [(len(b) - 1) | ((turns - 1) << 5)] + list(b)


k1_play = sealed([0xAA, 0x01, 0x02, 0x00])
k1_right = sealed([0xAA, 0x01, 0x80, 0x01, 0x80, 0x20, 0x00])
k1_centre = sealed([0xAA, 0x01, 0x80, 0x01, 0x80, 0x00, 0x00])
k1_preset = sealed([0xAA, 0x01, 0x80, 0x02, 17, 5, 0x00])
wtx_play = [0xA1, 0x01, 0x23, 0x00, 0xAF]
wtx_right = [0xA1, 0x01, 0x80, 0xA0, 0xAF]
wtx_centre = [0xA1, 0x01, 0x80, 0x00, 0xAF]
add("fuzz_keypad", "keypad1_keys", [1, 1, 2, 0, 4] + chunk(k1_play) + chunk(k1_right) + chunk(k1_centre) + chunk(k1_preset))
add("fuzz_keypad", "keypad1_split", [1, 0, 2, 0, 4] + chunk(k1_right[:3]) + chunk(k1_right[3:], 2) + chunk(k1_play * 3, 4))
add("fuzz_keypad", "keypad1_menu", [1, 1, 2, 0x10, 4] + chunk(k1_right) + chunk(k1_centre))
add("fuzz_keypad", "wtx_keys", [4, 1, 2, 0, 4] + chunk(wtx_play) + chunk(wtx_right) + chunk(wtx_centre))
add("fuzz_keypad", "model_change", [1, 1, 2, 0, 4] + chunk(k1_play[:3]) + [0xE0, 4] + chunk(wtx_play) + [0xE0, 1] + chunk(k1_play))

# Mailbox target: clock word, count of configuration writes (field, channel, value each), then
# ops: < 0x60 a message (selector, sender, p1..p5), 0x60.. a configuration write, 0x90.. a clock
# step and a pass, 0xB0.. keypad bytes, 0xC8.. KTT bytes, 0xD8.. (op % 32) + 1 passes.
def post(sel, *p):
    return [0, sel, 1] + [v for v in (list(p) + [0] * 5)[:5]]


PTZ, ALIVE, STOP, KID, KMODEL, PMODEL, KTT = 2, 1, 0, 5, 6, 7, 8
passes = [0xDF]
add("fuzz_mailbox", "pelco_moves", [0, 0, 0, 0, 0] + post(PTZ, 0, 15, 8) + passes + post(PTZ, 0, 47) + passes + post(ALIVE) + post(STOP))
add("fuzz_mailbox", "tour", [0, 0, 0, 0, 0] + post(PTZ, 1, 22, 3) + passes * 8 + post(PTZ, 1, 54))
add("fuzz_mailbox", "ramp_all", [0, 0, 0, 0, 0] + sum((post(PTZ, ch, 17, 0) for ch in range(16)), []) + passes * 4)
add("fuzz_mailbox", "ktt_variant", [0, 0, 0, 0, 1, 5, 0, 4] + post(KTT, 5, 1, 0) + post(KID, 3) + [0xC8, 4, 1, 2, 3, 4] + passes)
add("fuzz_mailbox", "keypad", [0, 0, 0, 0, 1, 8, 0, 1] + [0xB0, len(k1_right)] + k1_right + passes + [0xB0, len(k1_centre)] + k1_centre + passes)
add("fuzz_mailbox", "models", [0xF0, 0xFF, 0xFF, 0xFF, 2, 1, 3, 0xFE, 0, 0, 20] + post(KMODEL, 4) + post(PMODEL, 3) + post(PTZ, 3, 81, 0x90, 5, 0x85) + passes)

# Drivers: model selector, address, clock word, state flag, then ops (< 0x80: code, p1, p2, p3,
# source; 0xC0..0xEF: a status poll after op - 0xC0 ticks).
for sel in range(43):
    poll = [0xC0 + 30, 0xC0 + 40, 0xEF, 0xEF]
    cmds = [15, 8, 0, 0, 1, 47, 0, 0, 0, 1, 13, 0, 0, 0, 1] + poll + [45, 0, 0, 0, 1, 22, 3, 0, 0, 1] + poll * 3
    cmds += [81, 0x90, 5, 0x85, 1, 113, 0, 0, 0, 1, 80, 5, 0, 0, 1, 21, 63, 0, 0, 1, 27, 0, 0, 0, 1, 59, 0, 0, 0, 1]
    add("fuzz_drivers", "model%02d" % sel, [sel, 1, 0, 0, 0, 0, 0] + cmds)

# KTT: variant (odd = the KTT variant), reporting path, port assignment, link model, then ops
# (< 0x80: that many line bytes, 0x80..0xBF: KTTMessage p1 p2 p3, 0xC0..0xDF: take and report).
add("fuzz_ktt", "events", [1, 4, 0, 0, 0x80, 0xD4, 1, 3, 0x80, 0xD0, 2, 1, 0xC0, 0xC1, 0xC1, 0xE0, 0xC1])
add("fuzz_ktt", "echo", [1, 1, 0, 0, 5, ord("A"), ord("T"), ord("\r"), ord("\n"), 0, 0x80, 8, 1, 0])
add("fuzz_ktt", "overflow", [1, 3, 0, 0] + [0x80, 1, 2, 1] * 70 + [0xC0] * 5)

# Event log: ops (< 0x50: LogWrite(type, a1..a5, text), 0x60..0x7F: a raw record to one writer,
# 0x80..0x9F: damage a file, 0xA0..0xAF: delete daily logs, 0xB0..: read back).
def logw(t, *a, text=b""):
    args = (list(a) + [0] * 5)[:5]
    return [0x00, t] + args + [len(text)] + list(text)


rec = list(struct.pack("<8I", 0x44474F4C, 1714521600, 30, 1, 2, 3, 4, 0))
add("fuzz_log", "writes", logw(0, text=b"SYSTEM START") + logw(44, 255) + logw(40, 0x81) + logw(9, 1, 2) + logw(8, 0, text=b"BACKUP") + [0xB1, 0xB0])
# A flash file cut to 6400 bytes rotates on the next record.
add("fuzz_log", "rotation", [0x61] + rec + [0x81, 0x00, 0xFF, 0x00, 0x19, 0, 0, 0x61] + rec + [0xB1])
add("fuzz_log", "damage", [0x60] + rec + [0x60] + rec + [0xC0, 0x81, 0x40, 0xB0, 0x80, 0x3E, 4, 0, 1, 2, 3, 0xB0, 0xA0, 0xFF, 0xE8, 7, 0, 0, 5, 1, 0xB0])

# Simulator decoders: channel count, four channel models, the protocol's model, then the bytes:
# the golden frames of every driver's unit test, one seed per model.
def golden_frames():
    src = os.path.join(here, "..", "..", "unit", "drivers")
    texts = [open(os.path.join(src, f)).read() for f in sorted(os.listdir(src)) if f.endswith(".cpp")]
    models = {}
    for t in texts:
        for name, num in re.findall(r"\b(k[A-Z]\w*) = (\d+)", t):
            models[name] = int(num)
    frames = {}
    for t in texts:
        for name, body in re.findall(r"ExpectGolden\((k\w+), \{(.*?)\n    \}\);", t, re.S):
            hexes = re.findall(r'"((?:[0-9A-F]{2}(?: \| | )?)+)"', body)
            b = [int(x, 16) for h in hexes[:6] for x in h.replace("|", " ").split()]
            frames[models[name]] = b
    return frames


for model, b in sorted(golden_frames().items()):
    add("fuzz_sim_decode", "model%02d" % model, [4, model, 14, 19, 27, model] + b + b[:3])

# Text-insertion targets: reads of a length byte and that many bytes.
def reads(*lines):
    out = []
    for l in lines:
        out += [len(l)] + list(l)
    return out


pos = {
    "fuzz_pos_ave_vsipro": [b"  TOTAL    12.50\n", b"DIET COLA  x2 2.40\nTEA 1.00\n", b"  2 @ 1.50\n", b"12:30 2024-02-29\n"],
    "fuzz_pos_ave_hydra": [b"\xc8COLA 1.20\n", b"\x00X\n"],
    "fuzz_pos_tvc": [b"12AB\tCOLA\t1.20\t3.60\tC1\n", b" 7\tA\tB\tC\tD\tE\n"],
    "fuzz_pos_atop": [b"1:DOOR OPEN:1234:10.0.0.5:extra\r\n", b"2:ALARM:77\r\n"],
    "fuzz_pos_wsi": [b"DEV1\t12\tabc\tOK\tX\n", b"D\t  -5\t99999999999\tC"],
    "fuzz_pos_general": [b"7|A|B|1|2\n8|C|D|3|4\n", b"x|A\n8|C|D|3|4\n"],
    "fuzz_pos_friinfo": [b"08:00 Transaction start\n", b"REQ|CWD|01|02|1234567|99\n", b" Money presented NTD1000x3 NTD100x5\n", b"Transaction end\n"],
    "fuzz_pos_geniron": [b"alert_serial$", b"alert_phone", b"-------------:B:C:D:E:F$"],
}
for target, lines in pos.items():
    add(target, "lines", reads(*lines))
door_text = b"Door open"
body = [0, 0, 0x30, 0x39, 2] + list(door_text)
L = len(body)
pkt = [0x00, 0x43, 0x47, 0x86, 1, L >> 8, L & 0xFF] + body[:]
pkt = pkt[:7] + body
pkt += [sum(pkt[7:7 + L]) & 0xFF]
pkt += [sum(pkt) & 0xFF, 0xFF]
add("fuzz_pos_aper", "door", reads(bytes(pkt), bytes([1, 2, 3]) + bytes(pkt), bytes(pkt[:2]), bytes(pkt[2:])))

for target, items in seeds.items():
    d = os.path.join(here, target)
    os.makedirs(d, exist_ok=True)
    for name, data in items:
        with open(os.path.join(d, name), "wb") as f:
            f.write(data)
