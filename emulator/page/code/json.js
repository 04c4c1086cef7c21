// JSON as indented lines. The numbers stay as they were sent; parsing them could change them.

const tokenPattern = /"(?:[^"\\]|\\.)*"|-?\d[\d.eE+-]*|true|false|null|[{}[\],:]/g;

function part(token) {
  if (token.startsWith('"')) return {kind: 'text', text: JSON.stringify(JSON.parse(token))};
  return {kind: /^[-\d]/.test(token) ? 'number' : 'word', text: token};
}

const sign = text => ({kind: 'sign', text});

class Printer {
  constructor(text) {
    this.tokens = text.match(tokenPattern);
    this.at = 0;
    this.lines = [];
  }

  add(path, depth, parts) { this.lines.push({path, depth, parts}); }

  value(path, depth, lead) {
    const first = this.tokens[this.at++];
    if (first !== '{' && first !== '[') return this.add(path, depth, [...lead, part(first)]);
    const end = first === '[' ? ']' : '}';
    if (this.tokens[this.at] === end) {
      ++this.at;
      return this.add(path, depth, [...lead, sign(first + end)]);
    }
    this.add(path, depth, [...lead, sign(first)]);
    this.elements(path, depth + 1, first === '[');
    this.add(path + '/', depth, [sign(end)]);
  }

  elements(path, depth, isArray) {
    for (let index = 0; ; ++index) {
      if (isArray) {
        this.value(`${path}[${index}]`, depth, []);
      } else {
        const key = JSON.parse(this.tokens[this.at]);
        this.at += 2;
        this.value(path ? `${path}.${key}` : key, depth, [{kind: 'key', text: JSON.stringify(key)}, sign(': ')]);
      }
      if (this.tokens[this.at++] !== ',') return;
      this.lines.at(-1).parts.push(sign(','));
    }
  }
}

/**
 * Lines with `path` (such as receipt.items[0].price), `depth` and coloured `parts`. A line that closes what another
 * opened has a slash at the end of its path. Nothing if the text is not JSON.
 */
export function jsonLines(text) {
  try {
    JSON.parse(text);
    const printer = new Printer(text);
    printer.value('', 0, []);
    return printer.lines;
  } catch {
    return undefined;
  }
}

export const plainLines = text => text.split(/\r?\n/).map(line => ({depth: 0, parts: [{kind: 'plain', text: line}]}));

export const textOf = line => '  '.repeat(line.depth) + line.parts.map(one => one.text).join('');
