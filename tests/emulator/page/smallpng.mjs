// Rewrites PNG files of screens with a palette, which makes them a fraction of the size.
import {deflateSync, inflateSync} from 'node:zlib';

const signature = Buffer.from('89504e470d0a1a0a', 'hex');
const mostColours = 256;

function* chunksOf(png) {
  for (let at = 8; at < png.length;) {
    const length = png.readUInt32BE(at);
    yield {type: png.toString('latin1', at + 4, at + 8), data: png.subarray(at + 8, at + 8 + length)};
    at += length + 12;
  }
}

function predicted(filter, left, up, corner) {
  if (filter === 0) return 0;
  if (filter === 1) return left;
  if (filter === 2) return up;
  if (filter === 3) return (left + up) >> 1;
  const distances = [left, up, corner].map(one => Math.abs(left + up - corner - one));
  return [left, up, corner][distances.indexOf(Math.min(...distances))];
}

/** Width, height and the colours of all pixels as numbers. */
function pixelsOf(png) {
  const chunks = [...chunksOf(png)];
  const header = chunks[0].data;
  const [width, height, depth, kind] = [header.readUInt32BE(0), header.readUInt32BE(4), header[8], header[9]];
  const bytes = {2: 3, 6: 4}[kind];
  if (depth !== 8 || !bytes) throw new Error(`a PNG of kind ${kind} with ${depth} bits`);
  const rows = inflateSync(Buffer.concat(chunks.filter(one => one.type === 'IDAT').map(one => one.data)));
  const stride = width * bytes;
  const pixels = new Uint32Array(width * height);
  let above = new Uint8Array(stride);
  for (let y = 0; y < height; ++y) {
    const filter = rows[y * (stride + 1)];
    const row = new Uint8Array(rows.subarray(y * (stride + 1) + 1, (y + 1) * (stride + 1)));
    for (let x = 0; x < stride; ++x)
      row[x] += predicted(filter, row[x - bytes] ?? 0, above[x], above[x - bytes] ?? 0);
    for (let x = 0; x < width; ++x)
      pixels[y * width + x] = row[x * bytes] << 16 | row[x * bytes + 1] << 8 | row[x * bytes + 2];
    above = row;
  }
  return {width, height, pixels};
}

const distance = (a, b) => [16, 8, 0].reduce((sum, shift) => sum + ((a >> shift & 255) - (b >> shift & 255)) ** 2, 0);

/** Colours that are frequent or unlike the others, and for each colour the nearest of them. */
function paletteOf(pixels) {
  const counts = new Map();
  for (const pixel of pixels) counts.set(pixel, (counts.get(pixel) ?? 0) + 1);
  const colours = [...counts.keys()].map(colour => ({colour, count: counts.get(colour), far: Infinity, index: 0}));
  const palette = [];
  while (palette.length < Math.min(mostColours, colours.length)) {
    const next = colours.reduce((best, one) => one.count * one.far > best.count * best.far ? one : best);
    palette.push(next.colour);
    for (const one of colours) {
      const far = distance(one.colour, next.colour);
      if (far < one.far) Object.assign(one, {far, index: palette.length - 1});
    }
  }
  return {palette, nearest: new Map(colours.map(one => [one.colour, one.index]))};
}

function crc32(bytes) {
  let sum = ~0;
  for (const byte of bytes) {
    sum ^= byte;
    for (let bit = 0; bit < 8; ++bit) sum = sum >>> 1 ^ (sum & 1 ? 0xEDB88320 : 0);
  }
  return ~sum >>> 0;
}

function chunk(type, data) {
  const named = Buffer.concat([Buffer.from(type, 'latin1'), data]);
  const length = Buffer.alloc(4), sum = Buffer.alloc(4);
  length.writeUInt32BE(data.length);
  sum.writeUInt32BE(crc32(named));
  return Buffer.concat([length, named, sum]);
}

export function smallPng(png) {
  const {width, height, pixels} = pixelsOf(png);
  const {palette, nearest} = paletteOf(pixels);
  const rows = Buffer.alloc(height * (width + 1));
  for (let y = 0; y < height; ++y) {
    for (let x = 0; x < width; ++x) rows[y * (width + 1) + 1 + x] = nearest.get(pixels[y * width + x]);
  }
  const header = Buffer.alloc(13);
  header.writeUInt32BE(width, 0);
  header.writeUInt32BE(height, 4);
  header.set([8, 3, 0, 0, 0], 8);
  const colours = Buffer.from(palette.flatMap(colour => [colour >> 16, colour >> 8 & 255, colour & 255]));
  return Buffer.concat([signature, chunk('IHDR', header), chunk('PLTE', colours),
    chunk('IDAT', deflateSync(rows, {level: 9})), chunk('IEND', Buffer.alloc(0))]);
}
