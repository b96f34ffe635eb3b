import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';
import { existsSync, readdirSync } from 'node:fs';
import { fileURLToPath } from 'node:url';
import test from 'node:test';

import { readSource, root } from './support.mjs';

const mimeTypesPath = 'installation/resources/ORBCefRsc/mime-types.xml';
const uriSchemesPath = 'installation/resources/ORBCefRsc/uri-schemes.xml';

/** All elements of a file, read by an independent parser that refuses what is not well-formed. */
function elements(path) {
  const program = `
import json, sys, xml.etree.ElementTree as tree
json.dump([[e.tag, e.attrib, (e.text or "").strip(), len(e)] for e in tree.parse(sys.argv[1]).iter()], sys.stdout)
`;
  const file = fileURLToPath(new URL(path, root));
  const output = execFileSync('python3', ['-c', program, file], { encoding: 'utf8' });
  return JSON.parse(output).map(([name, attributes, text, children]) => ({
    name,
    attributes,
    text,
    children,
  }));
}

/** The nodes of a file as the module's reader walks them: end tags count, and so does white space. */
function nodes(path) {
  const pattern = /<\?[^]*?\?>|<!--[^]*?-->|<\/(\w+)>|<(\w+)[^>]*?(\/?)>|([^<]+)/g;
  return Array.from(readSource(path).matchAll(pattern), ([, end, start, , text]) => {
    if (text !== undefined) return { name: '#text', text: text.trim() === '' ? null : text };
    return { name: end ?? start ?? '#other', text: null };
  });
}

/** The table that the module makes of the schemes: the same walk, step by step. */
function readSchemes() {
  const table = new Map();
  const walk = nodes(uriSchemesPath).values();
  const move = () => {
    const { value, done } = walk.next();
    assert.ok(!done, 'the walk ran off the end of the file');
    return value;
  };
  for (let node = move(); node.name !== 'people'; node = move()) {
    if (node.name !== 'value') continue;
    node = move();
    const scheme = node.text ?? '';
    while (node.name !== 'description') node = move();
    const description = move().text ?? '';
    if (!table.has(scheme)) table.set(scheme, description);
  }
  return table;
}

const mimeTypes = () => elements(mimeTypesPath).filter(({ name }) => name === 'mimeType');

test('the MIME types have one entry for each extension, in the form that lookups need', () => {
  const entries = mimeTypes();
  assert.ok(entries.length > 200);
  const extensions = entries.map(({ attributes }) => attributes.extension);
  assert.deepEqual(
    extensions.filter((extension, i) => extensions.indexOf(extension) !== i),
    [],
  );
  for (const { attributes, children, text } of entries) {
    assert.match(attributes.extension, /^\.[a-z0-9]+$/);
    assert.match(
      attributes.type,
      /^(application|audio|font|image|message|model|text|video)\/[a-z0-9.+-]+$/,
    );
    assert.deepEqual(Object.keys(attributes).sort(), ['extension', 'type']);
    assert.deepEqual([children, text], [0, '']);
  }
});

test('every MIME type is an empty element, so that no end tag adds an entry', () => {
  const source = readSource(mimeTypesPath);
  assert.doesNotMatch(source, /<\/mimeType>/);
  const walked = nodes(mimeTypesPath).filter(({ name }) => name === 'mimeType');
  assert.equal(walked.length, mimeTypes().length);
});

test('the groups of the MIME types are sorted', () => {
  const groups = readSource(mimeTypesPath).split('\n\n');
  assert.ok(groups.length > 10);
  for (const group of groups) {
    const extensions = Array.from(
      group.matchAll(/ extension="([^"]*)"/g),
      ([, extension]) => extension,
    );
    assert.ok(extensions.length > 0);
    assert.deepEqual(extensions, [...extensions].sort());
  }
});

for (const [extension, type] of Object.entries({
  '.js': 'text/javascript',
  '.mjs': 'text/javascript',
  '.cjs': 'text/javascript',
  '.wasm': 'application/wasm',
  '.html': 'text/html',
  '.css': 'text/css',
  '.json': 'application/json',
  '.map': 'application/json',
  '.webmanifest': 'application/manifest+json',
  '.svg': 'image/svg+xml',
  '.png': 'image/png',
  '.jpg': 'image/jpeg',
  '.webp': 'image/webp',
  '.avif': 'image/avif',
  '.ico': 'image/x-icon',
  '.woff2': 'font/woff2',
  '.mp4': 'video/mp4',
  '.mp3': 'audio/mpeg',
  '.vtt': 'text/vtt',
  '.xml': 'application/xml',
  '.txt': 'text/plain',
  '.pdf': 'application/pdf',
  '.glb': 'model/gltf-binary',
  '.zip': 'application/zip',
})) {
  test(`${extension} is served as ${type}`, () => {
    const entry = mimeTypes().find(({ attributes }) => attributes.extension === extension);
    assert.equal(entry?.attributes.type, type);
  });
}

test("every file of the installation's web modules has a known type", () => {
  const known = new Set(mimeTypes().map(({ attributes }) => attributes.extension));
  const folder = new URL('installation/webapps/', root);
  const files = readdirSync(folder, { recursive: true, withFileTypes: true }).filter((entry) =>
    entry.isFile(),
  );
  assert.ok(files.length > 5);
  for (const { name } of files) assert.ok(known.has(name.slice(name.lastIndexOf('.'))), name);
});

test("the module's walk over the nodes gives the table that the records stand for", () => {
  const records = elements(uriSchemesPath);
  const names = records.map(({ name }) => name);
  const schemes = records.filter(({ name }) => name === 'value').map(({ text }) => text);
  const descriptions = records.filter(({ name }) => name === 'description').map(({ text }) => text);
  assert.ok(schemes.length > 300);
  assert.ok(names.lastIndexOf('value') < names.indexOf('people'));
  assert.deepEqual(
    [...readSchemes()],
    schemes.map((scheme, i) => [scheme, descriptions[i]]),
  );
});

test('each record holds a scheme and then its description, and nothing else', () => {
  const inner = elements(uriSchemesPath).map(({ name }) => name);
  const first = inner.indexOf('record');
  const records = inner.slice(first, inner.indexOf('people'));
  assert.equal(records.length % 3, 0);
  for (let i = 0; i < records.length; i += 3) {
    assert.deepEqual(records.slice(i, i + 3), ['record', 'value', 'description']);
  }
});

test('schemes are sorted, unique and written as the engine gives them', () => {
  const schemes = elements(uriSchemesPath)
    .filter(({ name }) => name === 'value')
    .map(({ text }) => text);
  assert.deepEqual(schemes, [...new Set(schemes)].sort());
  for (const scheme of schemes) assert.match(scheme, /^[a-z][a-z0-9+.-]*$/);
  for (const description of readSchemes().values()) assert.match(description, /^\S.+\S$/);
  for (const scheme of ['http', 'https', 'mailto', 'tel', 'sms', 'geo', 'urn']) {
    assert.ok(schemes.includes(scheme), scheme);
  }
});

test('what no page may start is not among the schemes', () => {
  const schemes = readSchemes();
  for (const scheme of ['', 'javascript', 'vbscript', 'shell', 'xortv', 'ms-msdt', 'search-ms']) {
    assert.equal(schemes.has(scheme), false, scheme);
  }
});

test('the files that the module reads are where it looks for them', () => {
  for (const path of [
    'installation/webapps/ORBCefBindings/cef_extensions.js',
    'installation/webapps/ORBCefBindings/snippets/addRootDocumentEventListeners.js',
    'installation/webapps/ORBCefBindings/snippets/addGlobalEventListeners.js',
    'installation/webapps/ORBCefBindings/snippets/getDocumentSize.js',
    mimeTypesPath,
    uriSchemesPath,
  ]) {
    assert.ok(existsSync(new URL(path, root)), path);
  }
});
