#!/usr/bin/env python3
"""Draws the module's pictures as SVG and renders the PNG/GIF files from them.

Run from BodyTemperature/: python3 Images/make_pictures.py
Needs rsvg-convert (librsvg2-bin) and ffmpeg (for the animated GIF).
The SVG next to every PNG is its source; edit the drawing here and re-run.
"""
import math
import os
import subprocess
import tempfile

ROOT = os.path.dirname(os.path.abspath(__file__))  # BodyTemperature/Images

RED, YELLOW, BLUE, GREEN, CYAN = "#FF4C1F", "#FFAA36", "#2F8CFF", "#19DF7B", "#06E7FF"
DARK, PANEL, LINE = "#0B1626", "#122238", "#24405F"


def svg(w, h, body, extra_defs=""):
    return (f'<svg xmlns="http://www.w3.org/2000/svg" width="{w}" height="{h}" viewBox="0 0 {w} {h}">'
            f'<defs>{extra_defs}</defs>{body}</svg>\n')


def write(rel, text, png=True, w=None, h=None):
    path = os.path.join(ROOT, rel)
    os.makedirs(os.path.dirname(path), exist_ok=True)
    if png:
        src = path[:-4] + ".svg"
        with open(src, "w") as f:
            f.write(text)
        args = ["rsvg-convert", src, "-o", path]
        if w:
            args += ["-w", str(w), "-h", str(h)]
        subprocess.check_call(args)
    else:
        with open(path, "w") as f:
            f.write(text)


# ---- mask icons: a surgical mask; red and yellow are struck through (no mask)
def mask_icon(colour, struck, size):
    body = ('<g fill="none" stroke="{c}" stroke-width="1.6" stroke-linecap="round">'
            '<path d="M4.5 8.6 C2 8.2 1.6 11.4 4.6 12.4"/><path d="M27.5 8.6 C30 8.2 30.4 11.4 27.4 12.4"/></g>'
            '<path d="M5 8 Q16 4.5 27 8 L26 19 Q16 27 6 19 Z" fill="{c}"/>'
            '<g stroke="{d}" stroke-width="1.4" stroke-linecap="round" opacity="0.55">'
            '<path d="M8 11.5 Q16 9.5 24 11.5"/><path d="M8.5 15.5 Q16 13.5 23.5 15.5"/></g>').format(c=colour, d=DARK)
    if struck:
        body += ('<path d="M3 29 L29 3" stroke="{d}" stroke-width="4.4" stroke-linecap="round"/>'
                 '<path d="M3 29 L29 3" stroke="#FFFFFF" stroke-width="2.2" stroke-linecap="round"/>').format(d=DARK)
    return svg(32, 32, body)


# ---- temperature badges: a pill with a thermometer mark at the left; the text is drawn by the label
def temp_badge(colour, w, h):
    r = h / 2
    s = h / 28.0
    body = (f'<linearGradient id="g" x1="0" y1="0" x2="1" y2="0"><stop offset="0" stop-color="{colour}"/>'
            f'<stop offset="1" stop-color="{colour}" stop-opacity="0.78"/></linearGradient>')
    shape = (f'<rect x="0.5" y="0.5" width="{w-1}" height="{h-1}" rx="{r-0.5}" fill="url(#g)"/>'
             f'<rect x="1.5" y="1.5" width="{w-3}" height="{h-3}" rx="{r-1.5}" fill="none" stroke="#FFFFFF" stroke-opacity="0.35"/>'
             f'<g transform="translate({9*s},{4*s}) scale({s})" fill="none" stroke="#FFFFFF" stroke-width="1.6" stroke-opacity="0.9">'
             '<path d="M3 2.5 a2 2 0 0 1 4 0 V12 a4 4 0 1 1 -4 0 Z"/></g>'
             f'<circle cx="{14*s}" cy="{19.6*s}" r="{2.2*s}" fill="#FFFFFF" fill-opacity="0.9"/>')
    return svg(w, h, shape, body)


# ---- default faces: a faint head-and-shoulders silhouette on a transparent
# ground, so a card's texts stay legible where they run over it
def default_face(w, h):
    shape = ('<rect x="0.5" y="0.5" width="119" height="159" rx="2" fill="#FFFFFF" fill-opacity="0.035"/>'
             '<circle cx="60" cy="62" r="24" fill="#8FA9C8" fill-opacity="0.22"/>'
             '<path d="M16 160 C18 118 38 100 60 100 C82 100 102 118 104 160 Z" fill="#8FA9C8" fill-opacity="0.22"/>')
    return svg(w, h, f'<g transform="scale({w/120},{h/160})">{shape}</g>')


# ---- card background for temperature captures (whole card, border-image)
def card_background():
    defs = ('<linearGradient id="bg" x1="0" y1="0" x2="1" y2="1"><stop offset="0" stop-color="#16304D"/>'
            '<stop offset="1" stop-color="#0D1B2D"/></linearGradient>'
            '<pattern id="st" width="10" height="10" patternUnits="userSpaceOnUse" patternTransform="rotate(45)">'
            '<rect width="3" height="10" fill="#FFFFFF" fill-opacity="0.04"/></pattern>')
    body = ('<rect width="380" height="222" rx="4" fill="url(#bg)"/>'
            '<path d="M250 0 H376 a4 4 0 0 1 4 4 V120 Z" fill="url(#st)"/>'
            '<rect x="0.5" y="0.5" width="379" height="221" rx="4" fill="none" stroke="#3A5A80" stroke-opacity="0.9"/>')
    return svg(380, 222, body, defs)


def no_data():
    body = ('<g fill="none" stroke="#FFFFFF" stroke-opacity="0.32" stroke-width="2" stroke-linejoin="round">'
            '<path d="M24 52 L36 26 H84 L96 52"/><path d="M24 52 V74 H96 V52"/>'
            '<path d="M24 52 H46 Q48 60 60 60 Q72 60 74 52 H96"/></g>'
            '<g fill="#FFFFFF" fill-opacity="0.22"><circle cx="44" cy="14" r="2"/><circle cx="60" cy="9" r="2.5"/><circle cx="76" cy="14" r="2"/></g>')
    return svg(120, 90, body)


def no_data_corner():
    return svg(16, 16, f'<path d="M2 2 H14 L2 14 Z" fill="{CYAN}" fill-opacity="0.7"/>')


# ---- tool buttons: 0 normal, 1 hover, 2 pressed, 3 disabled
STATE_COLOURS = ["#B7C4D6", "#FFFFFF", CYAN, "#4A5A70"]
STATE_BG = [None, "#FFFFFF", CYAN, None]


def tool_button(kind, state):
    c = STATE_COLOURS[state]
    bg = ''
    if STATE_BG[state]:
        bg = f'<rect x="1" y="1" width="30" height="30" rx="4" fill="{STATE_BG[state]}" fill-opacity="0.12"/>'
    if kind == "Filiter":
        g = f'<path d="M7 8 H25 L18 17 V24 L14 26 V17 Z" fill="none" stroke="{c}" stroke-width="2" stroke-linejoin="round"/>'
    elif kind == "Pop":
        g = (f'<rect x="6" y="8" width="20" height="16" rx="2" fill="none" stroke="{c}" stroke-width="2"/>'
             f'<path d="M6 12 H26" stroke="{c}" stroke-width="2"/>'
             f'<path d="M16 15 V19" stroke="{c}" stroke-width="2" stroke-linecap="round"/><circle cx="16" cy="21.6" r="1.2" fill="{c}"/>')
    elif kind == "Report":
        g = (f'<path d="M9 6 H20 L24 10 V26 H9 Z" fill="none" stroke="{c}" stroke-width="2" stroke-linejoin="round"/>'
             f'<path d="M13 21 V18 M16.5 21 V14 M20 21 V16" stroke="{c}" stroke-width="2" stroke-linecap="round"/>')
    else:
        g = (f'<path d="M7 13 H11 L17 8 V24 L11 19 H7 Z" fill="{c}"/>'
             f'<g fill="none" stroke="{c}" stroke-width="2" stroke-linecap="round">'
             '<path d="M20.5 12.5 Q23 16 20.5 19.5"/><path d="M23.5 9.5 Q28 16 23.5 22.5"/></g>')
    return svg(32, 32, bg + g)


# ---- alarm display switch: a bell, struck through while alarms are not shown
def bell(on):
    c = CYAN if on else "#6B7A90"
    body = (f'<path d="M16 5 C11 5 9 9 9 13 V18 L6.5 22 H25.5 L23 18 V13 C23 9 21 5 16 5 Z" fill="{c}" fill-opacity="{0.9 if on else 0.5}"/>'
            f'<path d="M13 24 Q16 28 19 24" fill="none" stroke="{c}" stroke-width="2" stroke-linecap="round"/>')
    if on:
        body += (f'<g fill="none" stroke="{c}" stroke-width="1.8" stroke-linecap="round">'
                 '<path d="M5 9 Q4 12 5 15"/><path d="M27 9 Q28 12 27 15"/></g>')
    else:
        body += (f'<path d="M6 27 L26 5" stroke="{DARK}" stroke-width="4.4" stroke-linecap="round"/>'
                 f'<path d="M6 27 L26 5" stroke="{c}" stroke-width="2" stroke-linecap="round"/>')
    return svg(32, 32, body)


def header_wing(left):
    defs = ('<linearGradient id="g" x1="0" y1="0" x2="1" y2="0">'
            f'<stop offset="0" stop-color="{CYAN}" stop-opacity="{0 if left else 0.9}"/>'
            f'<stop offset="1" stop-color="{CYAN}" stop-opacity="{0.9 if left else 0}"/></linearGradient>')
    if left:
        body = ('<rect x="0" y="7" width="44" height="2" fill="url(#g)"/>'
                f'<path d="M46 3 L51 8 L46 13" fill="none" stroke="{CYAN}" stroke-width="2"/>'
                f'<path d="M52 3 L57 8 L52 13" fill="none" stroke="{CYAN}" stroke-width="2" stroke-opacity="0.6"/>')
    else:
        body = ('<rect x="16" y="7" width="44" height="2" fill="url(#g)"/>'
                f'<path d="M14 3 L9 8 L14 13" fill="none" stroke="{CYAN}" stroke-width="2"/>'
                f'<path d="M8 3 L3 8 L8 13" fill="none" stroke="{CYAN}" stroke-width="2" stroke-opacity="0.6"/>')
    return svg(60, 16, body, defs)


# ---- retract / spread / shrink tabs: a slim tab with a chevron pointing where the panel goes
def tab(w, h, direction, hover):
    fill = "#1E3A5C" if not hover else "#24507A"
    arrow = "#B7C4D6" if not hover else CYAN
    cx, cy = w / 2, h / 2
    pts = {"left": f"{cx+2},{cy-5} {cx-2},{cy} {cx+2},{cy+5}", "right": f"{cx-2},{cy-5} {cx+2},{cy} {cx-2},{cy+5}",
           "up": f"{cx-5},{cy+2} {cx},{cy-2} {cx+5},{cy+2}", "down": f"{cx-5},{cy-2} {cx},{cy+2} {cx+5},{cy-2}"}[direction]
    r = min(w, h) / 2
    body = (f'<rect x="0" y="0" width="{w}" height="{h}" rx="{r}" fill="{fill}" fill-opacity="0.95"/>'
            f'<polyline points="{pts}" fill="none" stroke="{arrow}" stroke-width="1.6" stroke-linecap="round" stroke-linejoin="round"/>')
    return svg(w, h, body)


# The animation is drawn on the dialogs' panel colour: GIF has only on/off
# transparency, which would cut the fading tail of the spinner away.
def loading_frame(i, n):
    body = f'<rect width="54" height="54" fill="{DARK}"/>'
    for k in range(12):
        a = 2 * math.pi * k / 12
        age = (i - k) % n
        op = max(0.15, 1.0 - age / 12.0)
        x1, y1 = 27 + 12 * math.sin(a), 27 - 12 * math.cos(a)
        x2, y2 = 27 + 22 * math.sin(a), 27 - 22 * math.cos(a)
        body += (f'<line x1="{x1:.2f}" y1="{y1:.2f}" x2="{x2:.2f}" y2="{y2:.2f}" stroke="{CYAN}" '
                 f'stroke-opacity="{op:.2f}" stroke-width="4.5" stroke-linecap="round"/>')
    return svg(54, 54, body)


def similarity_bg():
    defs = ('<linearGradient id="g" x1="0" y1="0" x2="0" y2="1"><stop offset="0" stop-color="#0F7FA0"/>'
            '<stop offset="1" stop-color="#0A4E6A"/></linearGradient>')
    body = (f'<path d="M8 1 H92 L99 26 L92 51 H8 L1 26 Z" fill="url(#g)" stroke="{CYAN}" stroke-width="1.5"/>')
    return svg(100, 52, body, defs)


def detail_background():
    defs = ('<radialGradient id="g" cx="0.5" cy="0" r="1"><stop offset="0" stop-color="#1B3554"/>'
            '<stop offset="1" stop-color="#0B1626"/></radialGradient>')
    body = ('<rect width="1000" height="600" fill="url(#g)"/>'
            f'<path d="M0 0 H120 L110 6 H0 Z" fill="{CYAN}" fill-opacity="0.7"/>'
            f'<path d="M1000 600 H880 L890 594 H1000 Z" fill="{CYAN}" fill-opacity="0.7"/>')
    return svg(1000, 600, body, defs)


# ---- camera tree and tool icons (SVG only, 16 x 16 unless said)
def cam(colour, extra=''):
    return svg(16, 16, f'<rect x="1.5" y="4.5" width="9" height="7" rx="1.2" fill="none" stroke="{colour}" stroke-width="1.4"/>'
                       f'<path d="M10.5 7 L14.5 5 V11 L10.5 9 Z" fill="{colour}"/>' + extra)


def logo(thermal):
    mark = (f'<circle cx="32" cy="32" r="26" fill="none" stroke="#FFFFFF" stroke-opacity="0.35" stroke-width="4"/>'
            f'<path d="M20 40 L32 16 L44 40 L32 33 Z" fill="#FFFFFF" fill-opacity="0.35"/>')
    if thermal:
        mark += (f'<g transform="translate(258,14)" fill="none" stroke="{RED}" stroke-opacity="0.6" stroke-width="3">'
                 '<path d="M6 4 a5 5 0 0 1 10 0 V24 a9 9 0 1 1 -10 0 Z"/></g>')
    text = ('<text x="70" y="43" font-family="DejaVu Sans, sans-serif" font-weight="bold" font-size="28" '
            'letter-spacing="3" fill="#FFFFFF" fill-opacity="0.35">CORVANE</text>')
    return svg(290 if thermal else 256, 64, mark + text)


def close_view(colour):
    return svg(16, 16, f'<path d="M4 4 L12 12 M12 4 L4 12" stroke="{colour}" stroke-width="1.8" stroke-linecap="round"/>')


def prop_icon(kind, colour):
    if kind == "gender_unknow":
        g = (f'<circle cx="12" cy="9" r="4.5" fill="none" stroke="{colour}" stroke-width="1.6"/>'
             f'<path d="M4 21 Q12 12 20 21" fill="none" stroke="{colour}" stroke-width="1.6"/>'
             f'<text x="12" y="11.5" text-anchor="middle" font-family="DejaVu Sans" font-size="7" fill="{colour}">?</text>')
    elif kind == "male":
        g = (f'<circle cx="10" cy="14" r="6" fill="none" stroke="{colour}" stroke-width="1.8"/>'
             f'<path d="M14.5 9.5 L20 4 M15 4 H20 V9" fill="none" stroke="{colour}" stroke-width="1.8" stroke-linecap="round"/>')
    elif kind == "female":
        g = (f'<circle cx="12" cy="9" r="6" fill="none" stroke="{colour}" stroke-width="1.8"/>'
             f'<path d="M12 15 V22 M8.5 19 H15.5" stroke="{colour}" stroke-width="1.8" stroke-linecap="round"/>')
    else:
        dark = kind == "darkGlass"
        fill = colour if dark else "none"
        g = (f'<circle cx="7" cy="13" r="4" fill="{fill}" stroke="{colour}" stroke-width="1.6"/>'
             f'<circle cx="17" cy="13" r="4" fill="{fill}" stroke="{colour}" stroke-width="1.6"/>'
             f'<path d="M11 13 H13 M3 12 L1.5 9 M21 12 L22.5 9" stroke="{colour}" stroke-width="1.6" stroke-linecap="round"/>')
        if kind == "glasses_nor":
            g += f'<path d="M3 21 L21 5" stroke="{colour}" stroke-width="1.6" stroke-linecap="round"/>'
        if kind == "glasses_unknow":
            g += f'<text x="12" y="23.5" text-anchor="middle" font-family="DejaVu Sans" font-size="7" fill="{colour}">?</text>'
    return svg(24, 24, g)


def frame_box(w, h, colour, opacity):
    return svg(w, h, f'<rect x="0.5" y="0.5" width="{w-1}" height="{h-1}" rx="3" fill="#FFFFFF" fill-opacity="0.04" '
                     f'stroke="{colour}" stroke-opacity="{opacity}"/>')


def page_button(last, colour):
    if last:
        g = f'<path d="M5 4 L10 8 L5 12 Z" fill="{colour}"/><rect x="11" y="4" width="1.8" height="8" fill="{colour}"/>'
    else:
        g = f'<path d="M11 4 L6 8 L11 12 Z" fill="{colour}"/><rect x="3.2" y="4" width="1.8" height="8" fill="{colour}"/>'
    return svg(16, 16, g)


def main():
    bt = "BodyTemperature"
    for letter, colour, struck in (("R", RED, True), ("Y", YELLOW, True), ("G", GREEN, False)):
        m = mask_icon(colour, struck, 32)
        write(f"{bt}/icons/{letter}-mask16.png", m, w=16, h=16)
        write(f"{bt}/icons/{letter}-mask32.png", m, w=32, h=32)
        write(f"{bt}/icons/{letter}-temp.png", temp_badge(colour, 128, 28))
        write(f"{bt}/icons/{letter}-temp1.png", temp_badge(colour, 256, 50))
    write("AIShowPlugin/reCustomer/DefaultFace.png", default_face(120, 160))
    write("AIShowPlugin/reCustomer/DefaultFaceBig.png", default_face(182, 242))
    write("AIShowPlugin/rightBottom/BlacklistBg.png", card_background())
    write(f"{bt}/rightBottom/DefaultFace.png", default_face(120, 160))
    write(f"{bt}/rightBottom/NoData.png", no_data())
    write(f"{bt}/rightBottom/NoDataCorner.png", no_data_corner())
    for kind in ("Filiter", "Pop", "Sound", "Report"):
        for state in range(4):
            write(f"{bt}/Buttons/{kind}/{state}.png", tool_button(kind, state))
    for name, w, h, direction in (("RightRetract", 11, 115, "right"), ("RightSpread", 11, 115, "left"),
                                  ("BottomRetract", 115, 11, "down"), ("BottomSpread", 115, 11, "up"),
                                  ("ShrinkRtoL", 11, 115, "left"), ("ShrinkLtoR", 11, 115, "right")):
        write(f"{bt}/Buttons/Retract/{name}.png", tab(w, h, direction, False))
        write(f"{bt}/Buttons/Retract/{name}Hover.png", tab(w, h, direction, True))
    write(f"{bt}/Buttons/Alarm/AlarmOn.png", bell(True))
    write(f"{bt}/Buttons/Alarm/AlarmOff.png", bell(False))
    write("public/Icon/left.png", header_wing(True))
    write("public/Icon/right.png", header_wing(False))
    write(f"{bt}/background/faceComparePic.png", similarity_bg())
    write(f"{bt}/background/zhuapaibg.png", detail_background())
    pub = "public/PublicIcon"
    write(f"{pub}/Camera.svg", cam("#B7C4D6"), png=False)
    write(f"{pub}/CameraOffline.svg", cam("#5A6A80", '<path d="M2 14 L14 2" stroke="#FF4C1F" stroke-width="1.4"/>'), png=False)
    write(f"{pub}/CameraPlaying.svg", cam(GREEN), png=False)
    write(f"{pub}/PlaywithBg.svg", svg(16, 16, f'<circle cx="8" cy="8" r="7.5" fill="{CYAN}" fill-opacity="0.85"/>'
                                              '<path d="M6.2 4.8 L11.4 8 L6.2 11.2 Z" fill="#0B1626"/>'), png=False)
    write("public/btn/Camera.svg", cam("#B7C4D6"), png=False)
    write("public/btn/Group.svg", svg(16, 16, '<path d="M1.5 4 H6 L7.5 5.5 H14.5 V13 H1.5 Z" fill="none" stroke="#B7C4D6" '
                                              'stroke-width="1.4" stroke-linejoin="round"/>'), png=False)
    write(f"{pub}/prop_nor.png", frame_box(96, 72, "#FFFFFF", 0.18))
    write(f"{pub}/prop_sel.png", frame_box(96, 72, CYAN, 0.9))
    for last in (False, True):
        name = "LastPage" if last else "HomePage"
        write(f"{pub}/{name}.png", page_button(last, "#B7C4D6"))
        write(f"{pub}/{name}Disabled.png", page_button(last, "#4A5A70"))
    write("AIOpenPlatform/operation/Corvane.png", logo(False))
    write("AIOpenPlatform/operation/corvanetherm.png", logo(True))
    mt = "MixedTargetDetectionAlarm"
    write(f"{mt}/operation/CloseView.svg", close_view("#B7C4D6"), png=False)
    write(f"{mt}/operation/CloseViewHover.svg", close_view("#FFFFFF"), png=False)
    for kind in ("gender_unknow", "glasses_nor", "glasses_unknow"):
        write(f"{mt}/PropertyNormal/{kind}.svg", prop_icon(kind, "#8C9AB0"), png=False)
    for kind in ("darkGlass", "female", "male", "glasses"):
        write(f"{mt}/PropertySelect/{kind}_sel.svg", prop_icon(kind, CYAN), png=False)
    write(f"{mt}/detailBk/HFPD_Small.png", frame_box(96, 120, CYAN, 0.5))

    # The waiting animation: frames drawn as SVG, assembled into a looping GIF.
    n = 12
    with tempfile.TemporaryDirectory() as tmp:
        for i in range(n):
            src = os.path.join(tmp, f"f{i:02d}.svg")
            with open(src, "w") as f:
                f.write(loading_frame(i, n))
            subprocess.check_call(["rsvg-convert", src, "-o", os.path.join(tmp, f"f{i:02d}.png")])
        out = os.path.join(ROOT, "Public/Control/Dialog/Loading.gif")
        os.makedirs(os.path.dirname(out), exist_ok=True)
        with open(os.path.join(ROOT, "Public/Control/Dialog/Loading.svg"), "w") as f:
            f.write(loading_frame(0, n))
        subprocess.check_call(["ffmpeg", "-loglevel", "error", "-y", "-framerate", "12", "-i", os.path.join(tmp, "f%02d.png"),
                               "-filter_complex", "split[a][b];[a]palettegen=reserve_transparent=1[p];[b][p]paletteuse=alpha_threshold=128",
                               "-gifflags", "-offsetting", "-loop", "0", out])


if __name__ == "__main__":
    main()
