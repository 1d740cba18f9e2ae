#!/usr/bin/env bash
# Draws the pictures of the resources from their sources. Needs librsvg2-bin, imagemagick and the font DejaVu
# Sans; the build does not, for the results are checked in.
set -euo pipefail
cd "$(dirname "$0")"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

rsvg-convert -w 16 -h 16 source/port_small.svg -o "$work/16.png"
for size in 24 32 48; do
  rsvg-convert -w "$size" -h "$size" source/port.svg -o "$work/$size.png"
done
convert "$work"/{48,32,24,16}.png -compress None port.ico

# 256 colours are enough, and a quarter of the size. It has no pixels that show what is below.
rsvg-convert source/banner.svg -o "$work/banner.png"
convert "$work/banner.png" -alpha off -dither None -colors 255 -type Palette -compress None BMP3:banner.bmp

# 32 bits a pixel, with the colours multiplied by their alpha, as AlphaBlend wants them.
rsvg-convert source/help.svg -o "$work/help.png"
convert "$work/help.png" \( +clone -background black -alpha remove -alpha off \) \
  \( -clone 0 -alpha extract \) -delete 0 -compose CopyOpacity -composite \
  -define bmp3:alpha=true BMP3:help.bmp
