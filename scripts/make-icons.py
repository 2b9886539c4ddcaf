#!/usr/bin/env python3
"""Draw iModelStage's embedded 24x24 icons and write them as RGBA PNG files.

Standard library only, so the icons can be regenerated on any build machine.
Each shape is an "inside" predicate sampled on a 4x4 grid per pixel; the hit
ratio becomes the pixel's coverage, which gives anti-aliased edges without a
real rasteriser. Output is byte-for-byte deterministic.
"""
import math
import os
import struct
import zlib

SIZE = 24
SS = 4  # samples per pixel along each axis
ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
OUT_DIR = os.path.join(ROOT, "iModelStage", "viewing", "resources", "images")


def rgb(hexstr, alpha=1.0):
    h = hexstr.lstrip("#")
    return (int(h[0:2], 16), int(h[2:4], 16), int(h[4:6], 16), alpha)


INK = rgb("#303030")
PAPER = rgb("#ffffff")
RED = rgb("#d8362b")
GREEN = rgb("#2f9e3a")
BLUE = rgb("#2a62c9")
ORANGE = rgb("#f08c1a")
GLASS = rgb("#9cc8f0", 0.55)
STROKE = 1.5


# --- shape predicates: (x, y) -> bool, in pixel units, y pointing down ---

def seg(x0, y0, x1, y1, w):
    """Segment with round caps: distance to the segment within w/2."""
    dx, dy = x1 - x0, y1 - y0
    ll = dx * dx + dy * dy or 1e-12
    r2 = (w / 2.0) ** 2

    def inside(x, y):
        t = max(0.0, min(1.0, ((x - x0) * dx + (y - y0) * dy) / ll))
        ex, ey = x - (x0 + t * dx), y - (y0 + t * dy)
        return ex * ex + ey * ey <= r2
    return inside


def box(x0, y0, x1, y1):
    return lambda x, y: x0 <= x <= x1 and y0 <= y <= y1


def poly(pts):
    """Even-odd fill, so self-touching outlines still behave."""
    n = len(pts)

    def inside(x, y):
        hit = False
        for i in range(n):
            ax, ay = pts[i]
            bx, by = pts[(i + 1) % n]
            if (ay > y) != (by > y) and x < ax + (y - ay) * (bx - ax) / (by - ay):
                hit = not hit
        return hit
    return inside


def ring(cx, cy, r0, r1, a0=None, a1=None):
    """Annulus r0..r1, optionally limited to angles a0..a1 (degrees,
    counter-clockwise as seen on screen, 0 = east)."""
    def inside(x, y):
        dx, dy = x - cx, y - cy
        d2 = dx * dx + dy * dy
        if not (r0 * r0 <= d2 <= r1 * r1):
            return False
        if a0 is None:
            return True
        a = math.degrees(math.atan2(-dy, dx)) % 360.0
        return (a - a0) % 360.0 <= (a1 - a0) % 360.0
    return inside


def union(*preds):
    return lambda x, y: any(p(x, y) for p in preds)


def minus(a, b):
    return lambda x, y: a(x, y) and not b(x, y)


def head(tx, ty, fx, fy, length=4.5, width=4.5):
    """Triangular arrow head with its tip at (tx, ty), pointing away from (fx, fy)."""
    dx, dy = tx - fx, ty - fy
    d = math.hypot(dx, dy) or 1.0
    ux, uy = dx / d, dy / d
    bx, by = tx - ux * length, ty - uy * length
    px, py = -uy * width / 2.0, ux * width / 2.0
    return poly([(tx, ty), (bx + px, by + py), (bx - px, by - py)])


class Icon:
    def __init__(self):
        # straight (non-premultiplied) RGBA as floats, alpha 0..1
        self.px = [[(0.0, 0.0, 0.0, 0.0)] * SIZE for _ in range(SIZE)]

    def fill(self, inside, colour):
        """Composite one shape; a union is one shape so overlaps don't darken."""
        cr, cg, cb, ca = colour
        for j in range(SIZE):
            for i in range(SIZE):
                hits = 0
                for sy in range(SS):
                    y = j + (sy + 0.5) / SS
                    for sx in range(SS):
                        if inside(i + (sx + 0.5) / SS, y):
                            hits += 1
                if not hits:
                    continue
                sa = ca * hits / (SS * SS)
                dr, dg, db, da = self.px[j][i]
                oa = sa + da * (1.0 - sa)
                k = da * (1.0 - sa)
                self.px[j][i] = ((cr * sa + dr * k) / oa, (cg * sa + dg * k) / oa,
                                 (cb * sa + db * k) / oa, oa)

    # --- convenience wrappers ---
    def line(self, x0, y0, x1, y1, colour=INK, w=STROKE):
        self.fill(seg(x0, y0, x1, y1, w), colour)

    def polyline(self, pts, colour=INK, w=STROKE, closed=False):
        pairs = list(zip(pts, pts[1:] + (pts[:1] if closed else [])))
        self.fill(union(*[seg(a[0], a[1], b[0], b[1], w) for a, b in pairs]), colour)

    def rect(self, x0, y0, x1, y1, fill=None, outline=INK, w=STROKE):
        if fill:
            self.fill(box(x0, y0, x1, y1), fill)
        if outline:
            h = w / 2.0
            self.fill(minus(box(x0 - h, y0 - h, x1 + h, y1 + h),
                            box(x0 + h, y0 + h, x1 - h, y1 - h)), outline)

    def polygon(self, pts, fill=None, outline=INK, w=STROKE):
        if fill:
            self.fill(poly(pts), fill)
        if outline:
            self.polyline(list(pts), outline, w, closed=True)

    def circle(self, cx, cy, r, fill=None, outline=INK, w=STROKE):
        if fill:
            self.fill(ring(cx, cy, 0.0, r), fill)
        if outline:
            self.fill(ring(cx, cy, r - w / 2.0, r + w / 2.0), outline)

    def arrow(self, x0, y0, x1, y1, colour=INK, w=STROKE, hl=4.5, hw=4.5):
        # stop the shaft inside the head so its round cap can't poke past the tip
        d = math.hypot(x1 - x0, y1 - y0)
        k = max(0.0, (d - hl * 0.6) / d)
        shaft = seg(x0, y0, x0 + (x1 - x0) * k, y0 + (y1 - y0) * k, w)
        self.fill(union(shaft, head(x1, y1, x0, y0, hl, hw)), colour)

    def magnifier(self, cx, cy, r, glass=GLASS, handle=5.5):
        self.circle(cx, cy, r, fill=glass, outline=INK, w=1.75)
        c = math.sqrt(0.5)
        self.line(cx + c * (r + 0.8), cy + c * (r + 0.8),
                  cx + c * (r + handle), cy + c * (r + handle), INK, 3.0)

    # --- PNG output ---
    def png(self):
        raw = bytearray()
        for row in self.px:
            raw.append(0)  # filter type: none
            for r, g, b, a in row:
                if a <= 0.0:
                    raw += b"\0\0\0\0"
                else:
                    raw += bytes((int(round(r)), int(round(g)), int(round(b)),
                                  int(round(a * 255))))

        def chunk(tag, data):
            return (struct.pack(">I", len(data)) + tag + data +
                    struct.pack(">I", zlib.crc32(tag + data) & 0xFFFFFFFF))
        ihdr = struct.pack(">IIBBBBB", SIZE, SIZE, 8, 6, 0, 0, 0)
        return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", ihdr) +
                chunk(b"IDAT", zlib.compress(bytes(raw), 9)) + chunk(b"IEND", b""))


# --- the icons ---

def draw_grid(ic):
    # a 3x3 cell lattice, foreshortened like a floor seen at an angle
    bl, br, tr, tl = (2.5, 20.5), (21.5, 20.5), (17.5, 5.5), (6.5, 5.5)
    ic.polygon([bl, br, tr, tl], fill=rgb("#cfe3f7"), outline=None)

    def lerp(a, b, t):
        return (a[0] + (b[0] - a[0]) * t, a[1] + (b[1] - a[1]) * t)
    inner = []
    for t in (1 / 3.0, 2 / 3.0):
        inner.append(seg(*lerp(bl, tl, t), *lerp(br, tr, t), 1.0))
        inner.append(seg(*lerp(bl, br, t), *lerp(tl, tr, t), 1.0))
    ic.fill(union(*inner), rgb("#303030", 0.85))
    ic.polygon([bl, br, tr, tl], fill=None, outline=INK)


def draw_file(ic):
    page = [(5.5, 2.5), (14.5, 2.5), (19.5, 7.5), (19.5, 21.5), (5.5, 21.5)]
    ic.polygon(page, fill=PAPER, outline=None)
    ic.polygon([(14.5, 2.5), (14.5, 7.5), (19.5, 7.5)], fill=rgb("#c8c8c8"), outline=None)
    ic.fill(union(*[seg(8.5, y, x, y, 1.2) for y, x in
                    ((10.5, 16.5), (13.5, 16.5), (16.5, 16.5), (18.5, 13.0))]), BLUE)
    ic.polyline(page, INK, closed=True)
    ic.polyline([(14.5, 2.5), (14.5, 7.5), (19.5, 7.5)], INK)


def draw_transf(ic):
    # integer coordinates with even widths land exactly on pixel columns
    ox, oy = 8.0, 16.0
    ic.arrow(ox, oy, 23.0, oy, RED, 2.0, 6.0, 6.0)      # X to the right
    ic.arrow(ox, oy, ox, 1.0, GREEN, 2.0, 6.0, 6.0)     # Y up
    ic.arrow(ox, oy, 1.5, 22.5, BLUE, 2.0, 5.5, 6.0)    # Z out of the screen
    ic.rect(ox - 1.5, oy - 1.5, ox + 1.5, oy + 1.5, fill=INK, outline=None)


def draw_iplane(ic):
    plane = [(1.5, 20.5), (15.5, 20.5), (22.5, 12.5), (8.5, 12.5)]
    ic.polygon(plane, fill=rgb("#9cc8f0", 0.8), outline=INK)
    ic.arrow(12.0, 16.5, 12.0, 1.5, ORANGE, 1.75)
    ic.circle(12.0, 16.5, 1.5, fill=INK, outline=None)


def draw_pan(ic):
    c, hl, hw = 12.0, 5.0, 7.0
    arms = [seg(4.0, c, 20.0, c, 2.0), seg(c, 4.0, c, 20.0, 2.0)]
    heads = [head(1.0, c, c, c, hl, hw), head(23.0, c, c, c, hl, hw),
             head(c, 1.0, c, c, hl, hw), head(c, 23.0, c, c, hl, hw)]
    ic.fill(union(*(arms + heads)), INK)
    ic.circle(c, c, 2.0, fill=BLUE, outline=None)


def draw_view_orbit(ic):
    cx, cy, r = 12.0, 12.0, 9.0

    def at(deg):
        return cx + r * math.cos(math.radians(deg)), cy - r * math.sin(math.radians(deg))
    # counter-clockwise arc with a gap at the top; the head spans a chord so it
    # follows the curve rather than shooting off along the tangent
    ic.fill(union(ring(cx, cy, r - 1.0, r + 1.0, 110.0, 30.0),
                  head(*at(62.0), *at(22.0), 6.0, 7.0)), INK)
    top = [(8.0, 10.5), (12.0, 8.5), (16.0, 10.5), (12.0, 12.5)]
    ic.polygon(top, fill=rgb("#cfe3f7"), outline=None)
    ic.polygon([(8.0, 10.5), (12.0, 12.5), (12.0, 17.0), (8.0, 15.0)], fill=BLUE, outline=None)
    ic.polygon([(16.0, 10.5), (12.0, 12.5), (12.0, 17.0), (16.0, 15.0)],
               fill=rgb("#1d4690"), outline=None)
    ic.fill(union(seg(8.0, 10.5, 12.0, 12.5, 1.0), seg(12.0, 12.5, 16.0, 10.5, 1.0),
                  seg(12.0, 12.5, 12.0, 17.0, 1.0)), rgb("#303030", 0.6))


def draw_zoom(ic):
    ic.magnifier(9.5, 9.5, 6.5, handle=8.0)


def draw_zoom_limits(ic):
    ic.magnifier(10.5, 10.5, 4.0, handle=4.5)
    lo, hi, n = 1.5, 22.5, 5.0
    brackets = []
    for x, sx in ((lo, 1), (hi, -1)):
        for y, sy in ((lo, 1), (hi, -1)):
            brackets.append(seg(x, y, x + sx * n, y, 1.75))
            brackets.append(seg(x, y, x, y + sy * n, 1.75))
    ic.fill(union(*brackets), BLUE)


def draw_zoom_selected(ic):
    ic.magnifier(9.5, 9.5, 7.0, glass=rgb("#ffffff", 0.7), handle=7.5)
    ic.rect(6.5, 6.5, 12.5, 12.5, fill=ORANGE, outline=rgb("#a45400"), w=1.0)


def draw_zoom_window(ic):
    x0, y0, x1, y1, dash = 2.5, 2.5, 19.5, 15.5, 2.0
    dashes = []
    for ax, ay, bx, by in ((x0, y0, x1, y0), (x1, y0, x1, y1),
                           (x1, y1, x0, y1), (x0, y1, x0, y0)):
        length = math.hypot(bx - ax, by - ay)
        t = 0.0
        while t < length:
            e = min(t + dash, length)
            dashes.append(seg(ax + (bx - ax) * t / length, ay + (by - ay) * t / length,
                              ax + (bx - ax) * e / length, ay + (by - ay) * e / length, 1.25))
            t += dash * 2.0
    ic.fill(union(*dashes), INK)
    ic.magnifier(14.0, 14.0, 4.5, glass=rgb("#cfe3f7", 0.9), handle=5.0)


ICONS = {
    "grid.png": draw_grid,
    "file.png": draw_file,
    "transf.png": draw_transf,
    "iplane.png": draw_iplane,
    "viewer/pan.png": draw_pan,
    "viewer/view_orbit.png": draw_view_orbit,
    "viewer/zoom.png": draw_zoom,
    "viewer/zoom_limits.png": draw_zoom_limits,
    "viewer/zoom_selected.png": draw_zoom_selected,
    "viewer/zoom_window.png": draw_zoom_window,
}


def main():
    for name, draw in ICONS.items():
        ic = Icon()
        draw(ic)
        path = os.path.join(OUT_DIR, *name.split("/"))
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "wb") as f:
            f.write(ic.png())
        print("wrote", os.path.relpath(path, ROOT))


if __name__ == "__main__":
    main()
