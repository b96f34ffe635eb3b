import assert from 'node:assert/strict';
import { createRequire } from 'node:module';
import { dirname } from 'node:path';
import test from 'node:test';
import { fileURLToPath } from 'node:url';

import { createPage, root } from './support.mjs';

// The compiler is a package of the tests' own environment, which `./dev setup` makes.
const ts = createRequire(new URL('build/node/', root))('typescript');

const path = (name) => fileURLToPath(new URL(name, root));
const declarations = path('installation/webapps/ORBCefBindings/xocef.d.ts');
const usage = path('tests/script/types/usage.ts');
const project = path('installation/webapps/jsconfig.json');

const strict = { strict: true, noEmit: true, target: ts.ScriptTarget.ES2022, types: [] };

/** What the compiler complains of, one line each. */
function complaints(program) {
  return ts
    .getPreEmitDiagnostics(program)
    .map(({ file, start, messageText }) => {
      const place = file
        ? `${file.fileName}:${file.getLineAndCharacterOfPosition(start).line + 1}`
        : 'options';
      return `${place} ${ts.flattenDiagnosticMessageText(messageText, '\n')}`;
    });
}

function readProject() {
  const { config, error } = ts.readConfigFile(project, ts.sys.readFile);
  assert.equal(error, undefined);
  return ts.parseJsonConfigFileContent(config, ts.sys, dirname(project), undefined, project);
}

/** The members of the interface of `xocef`, as the compiler sees them. */
function declaredMembers() {
  const program = ts.createProgram([declarations], strict);
  const checker = program.getTypeChecker();
  const file = program.getSourceFile(declarations);
  const declaration = file.statements.find(
    (statement) => ts.isInterfaceDeclaration(statement) && statement.name.text === 'Xocef',
  );
  return checker
    .getPropertiesOfType(checker.getTypeAtLocation(declaration))
    .map((member) => ({
      name: member.getName(),
      words: ts.displayPartsToString(member.getDocumentationComment(checker)),
    }));
}

test('right calls compile, and every wrong one is an error', () => {
  assert.deepEqual(complaints(ts.createProgram([declarations, usage], strict)), []);
});

test('a wrong call that nobody expects is found', () => {
  const host = ts.createCompilerHost(strict);
  const { readFile } = host;
  host.readFile = (name) => readFile(name)?.replace(/^ *\/\/ @ts-expect-error.*$/gm, '');
  const { getSourceFile } = host;
  host.getSourceFile = (name, target) =>
    name === usage
      ? ts.createSourceFile(name, host.readFile(name), target, true)
      : getSourceFile(name, target);
  const found = complaints(ts.createProgram([declarations, usage], strict, host));
  assert.equal(found.length, 14, found.join('\n'));
});

test('the types name exactly the public functions, and each has its words', () => {
  const members = declaredMembers();
  const { run } = createPage();
  assert.deepEqual(members.map(({ name }) => name).sort(), [...run('Object.keys(xocef)')].sort());
  for (const { name, words } of members) assert.ok(words.length > 20, name);
});

test('the web applications of the installation are right by these types', () => {
  const { fileNames, options, errors } = readProject();
  assert.deepEqual(errors, []);
  assert.ok(fileNames.some((name) => name.endsWith('/Welcome/values.js')));
  assert.deepEqual(complaints(ts.createProgram(fileNames, options)), []);
});

test('an editor that opens an application shows what a function of xocef gives', () => {
  const { fileNames, options } = readProject();
  const service = ts.createLanguageService({
    getScriptFileNames: () => fileNames,
    getScriptVersion: () => '1',
    getScriptSnapshot: (name) => {
      const text = ts.sys.readFile(name);
      return text === undefined ? undefined : ts.ScriptSnapshot.fromString(text);
    },
    getCurrentDirectory: () => dirname(project),
    getCompilationSettings: () => options,
    getDefaultLibFileName: ts.getDefaultLibFilePath,
    fileExists: ts.sys.fileExists,
    readFile: ts.sys.readFile,
  });
  const file = fileNames.find((name) => name.endsWith('/Welcome/values.js'));
  const position = ts.sys.readFile(file).indexOf('xocef.saveValue') + 'xocef.s'.length;
  const info = service.getQuickInfoAtPosition(file, position);
  assert.match(ts.displayPartsToString(info.displayParts), /saveValue: .*=> Promise<void>$/);
  assert.match(ts.displayPartsToString(info.documentation), /^Saves a value in a store of the host/);
});
