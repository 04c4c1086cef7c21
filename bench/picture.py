"""Stacked bars as SVG."""

COLOURS = ("#9aa5b1", "#627d98", "#7d6b98", "#2b8a8a", "#57b894", "#e0a458", "#c8553d")
LEFT, TOP, BAR, GAP, WIDTH = 80, 16, 34, 18, 620
STYLE = "text{font:13px sans-serif;fill:#334} @media(prefers-color-scheme:dark){text{fill:#dde}}"


def stacked_bars(bars):
    """`bars` maps a bar's name to its parts, a part's name to its microseconds; all have the same parts."""
    longest = max(sum(parts.values()) for parts in bars.values())
    body = []
    y = TOP
    for name, parts in bars.items():
        body.append(f'<text x="{LEFT - 8}" y="{y + BAR / 2 + 4}" text-anchor="end">{name}</text>')
        x = float(LEFT)
        for (part, value), colour in zip(parts.items(), COLOURS):
            width = value / longest * WIDTH
            body.append(f'<rect x="{x:.1f}" y="{y}" width="{width:.1f}" height="{BAR}" fill="{colour}">'
                        f"<title>{part}: {value:.0f} µs</title></rect>")
            x += width
        body.append(f'<text x="{x + 6:.1f}" y="{y + BAR / 2 + 4}">{sum(parts.values()):.0f} µs</text>')
        y += BAR + GAP
    for (part, _), colour in zip(next(iter(bars.values())).items(), COLOURS):
        values = ", ".join(f"{parts[part]:.0f}" for parts in bars.values())
        body.append(f'<rect x="{LEFT}" y="{y}" width="12" height="12" fill="{colour}"/>'
                    f'<text x="{LEFT + 20}" y="{y + 11}">{part}: {values} µs</text>')
        y += 20
    return (f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {LEFT + WIDTH + 80} {y + 4}" role="img" '
            f'aria-label="Where the time of one receipt goes">\n<style>{STYLE}</style>\n' + "\n".join(body) + "\n</svg>\n")
