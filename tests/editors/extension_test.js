// Runs the unpacked extension on a stand-in for the editor, which keeps what the extension asks of it.
//
//     node extension_test.js EXTENSION-FOLDER KCF PROJECT-FOLDER
'use strict';

const assert = require('node:assert');
const { spawnSync } = require('node:child_process');
const fs = require('node:fs');
const Module = require('node:module');
const os = require('node:os');
const path = require('node:path');
const test = require('node:test');
const { fileURLToPath, pathToFileURL } = require('node:url');

const [extension, program, project] = process.argv.slice(2).map((name) => path.resolve(name));
const folder = fs.mkdtempSync(path.join(os.tmpdir(), 'kcf-'));
process.on('exit', () => fs.rmSync(folder, { recursive: true }));

const asked = { commands: {}, opened: [], tasks: [], errors: [], run: [] };
const settings = { path: program, languageServer: false };

class Uri {
  constructor(fsPath, fragment = '') {
    Object.assign(this, { fsPath, fragment });
  }
  static file(name) {
    return new Uri(name);
  }
  static parse(text) {
    return new Uri(fileURLToPath(text));
  }
  with({ fragment }) {
    return new Uri(this.fsPath, fragment);
  }
  toString() {
    return pathToFileURL(this.fsPath) + (this.fragment && `#${this.fragment}`);
  }
}

class EventEmitter {
  constructor() {
    const heard = [];
    this.event = (listener, self) => heard.push(listener.bind(self));
    this.fire = (told) => heard.forEach((listener) => listener(told));
    this.dispose = () => {};
  }
}

asked.diagnostics = new EventEmitter();

/** A part of the editor; of what the test does not look at, there is just enough to be called. */
function part(known) {
  return new Proxy(known, { get: (all, name) => (name in all ? all[name] : () => nothing) });
}

const nothing = part({ then: undefined });

const vscode = {
  version: '1.82.0',
  EventEmitter,
  CancellationTokenSource: class {
    token = part({ isCancellationRequested: false });
    dispose() {}
  },
  Disposable: class { dispose() {} },
  Uri,
  ProcessExecution: class {
    constructor(name, words, options) {
      Object.assign(this, { name, words, options });
    }
  },
  Task: class {
    constructor(definition, scope, name, source, execution, matcher) {
      Object.assign(this, { definition, scope, name, source, execution, matcher });
    }
  },
  TaskRevealKind: { Silent: 2 },
  CodeActionKind: { Empty: nothing },
  commands: part({
    registerCommand: (name, action) => { asked.commands[name] = action; },
    executeCommand: (name) => { asked.run.push(name); },
  }),
  env: part({ openExternal: async (uri) => { asked.opened.push(uri); } }),
  languages: part({
    match: () => 10,
    createDiagnosticCollection: () => part({ set: (uri, told) => asked.diagnostics.fire({ uri, told }) }),
  }),
  tasks: { executeTask: async (task) => { asked.tasks.push(task); } },
  window: part({
    activeTextEditor: undefined,
    visibleTextEditors: [],
    showErrorMessage: async (message) => { asked.errors.push(message); },
  }),
  workspace: part({
    getConfiguration: () => ({ get: (name) => settings[name] }),
    getWorkspaceFolder: () => undefined,
    textDocuments: [],
    notebookDocuments: [],
    workspaceFolders: [{ uri: Uri.file(path.join(folder, 'setups')) }],
  }),
};
// The client of the language server derives classes of its own from those of the editor.
const editor = new Proxy(vscode, { get: (all, name) => all[name] || class {} });
const load = Module._load;
Module._load = (name, ...rest) => (name === 'vscode' ? editor : load(name, ...rest));

/** Opens a text with the cursor where a `|` stands. */
function open(name, text) {
  const offset = text.indexOf('|');
  const file = path.join(folder, name);
  fs.mkdirSync(path.dirname(file), { recursive: true });
  fs.writeFileSync(file, text.replace('|', ''));
  vscode.window.activeTextEditor = {
    document: {
      languageId: 'kcf',
      version: 1,
      uri: Uri.file(file),
      getText: () => text.replace('|', ''),
      offsetAt: () => offset,
      save: async () => true,
    },
    selection: {},
  };
}

const main = require(extension);

test('the commands of the manifest are there', async () => {
  await main.activate({ subscriptions: [], globalStorageUri: Uri.file(path.join(folder, 'storage')) });
  const manifest = JSON.parse(fs.readFileSync(path.join(extension, 'package.json')));
  assert.deepStrictEqual(Object.keys(asked.commands).sort(),
    manifest.contributes.commands.map((each) => each.command).sort());
});

test('the manual opens at the tag of the cursor', async () => {
  const pages = pathToFileURL(path.join(folder, 'storage'));
  const friction = 'DOMAIN.KESTPLANE_2D.HYDRAULICS.FRICTION.html';
  const begin = 'PROJECT {\n  title = {a\n}\nDOMAIN\n{ // }\n  KESTPLANE_2D {\n    HYDRAULICS {\n      FRICTION {\n';
  for (const [text, expected] of [
    ['|PROJECT {\n', 'PROJECT.html'],
    ['PROJECT {\n  ti|tle = a\n}\n', 'PROJECT.html#tag-title'],
    ['PROJECT {\n  title = a\n}\n|', 'index.html'],
    [`${begin}  type = st|rickler\n`, `${friction}#tag-type`],
    [`${begin}  index = (1 // )\n 2\n  |3)\n`, `${friction}#tag-index`],
    [`${begin}  index = (1 2)\n|\n`, friction],
    [`${begin}  } WRONG {\n  type = |a\n`, 'DOMAIN.KESTPLANE_2D.HYDRAULICS.html'],
  ]) {
    open('setups/a.kcf', text);
    await asked.commands['kcf.showManual']();
    assert.deepStrictEqual(asked.errors, []);
    const shown = asked.opened.pop();
    assert.strictEqual(shown.toString(), `${pages}/${expected}`, text);
    const html = fs.readFileSync(shown.fsPath, 'utf8');
    assert.ok(!shown.fragment || html.includes(`id="${shown.fragment}"`), text);
  }
});

test('the preview opens', async () => {
  open('setups/reach/setup.kcf', fs.readFileSync(path.join(project, 'examples/first-region/setup.kcf'), 'utf8'));
  await asked.commands['kcf.preview']();
  assert.deepStrictEqual(asked.errors, []);
  assert.match(fs.readFileSync(asked.opened.pop().fsPath, 'utf8'), /<html/);
  assert.deepStrictEqual(fs.readdirSync(path.join(folder, 'setups/reach')), ['setup.kcf']);
});

test('the check of the folder is matched line by line', async () => {
  open('setups/a b.kcf', '|PROJECT {\n  titel = demo\n}\n');
  await asked.commands['kcf.checkFolder']();
  const { execution, matcher } = asked.tasks.pop();
  const done = spawnSync(execution.name, execution.words, { ...execution.options, encoding: 'utf8' });
  const manifest = JSON.parse(fs.readFileSync(path.join(extension, 'package.json')));
  const [{ name, pattern: [told, place] }] = manifest.contributes.problemMatchers;
  assert.strictEqual(matcher, `$${name}`);
  const lines = done.stdout.split('\n');
  const problems = lines.flatMap((line, i) => {
    const first = new RegExp(told.regexp).exec(line);
    const second = first && new RegExp(place.regexp).exec(lines[i + 1]);
    return second ? [[second[place.file], second[place.line], second[place.column], first[told.severity],
      first[told.code], first[told.message]]] : [];
  });
  assert.deepStrictEqual(problems.find((each) => each[4] === 'unknown-tag'),
    ['a b.kcf', '2', '3', 'error', 'unknown-tag', "there is no tag 'titel' in 'PROJECT'"]);
});

test('the server tells faults of an open file', { timeout: 30000 }, async () => {
  open('setups/b.kcf', '|PROJECT {\n  titel = demo\n}\n');
  const { document } = vscode.window.activeTextEditor;
  vscode.workspace.textDocuments.push(document);
  const told = new Promise((resolve) => asked.diagnostics.event(resolve));
  settings.languageServer = true;
  await main.activate({ subscriptions: [] });
  assert.deepStrictEqual(asked.errors, []);
  const { uri, told: diagnostics } = await told;
  assert.strictEqual(uri.fsPath, document.uri.fsPath);
  assert.ok(diagnostics.some((each) => each.code === 'unknown-tag'), diagnostics);
  settings.languageServer = false;
  vscode.workspace.textDocuments.pop();
  await main.deactivate();
});

test('what cannot be done is told', async () => {
  settings.path = path.join(folder, 'none');
  await main.activate({ subscriptions: [], globalStorageUri: Uri.file(path.join(folder, 'other')) });
  open('setups/a.kcf', '|PROJECT {\n');
  await asked.commands['kcf.preview']();
  assert.match(asked.errors.pop(), /^The program '.*none' is not there\. Name it in the setting kcf\.path\.$/);
  vscode.window.activeTextEditor = undefined;
  await asked.commands['kcf.preview']();
  assert.match(asked.errors.pop(), /^Open a command file first/);
  settings.languageServer = true;
  await main.activate({ subscriptions: [], globalStorageUri: Uri.file(path.join(folder, 'other')) });
  assert.match(asked.errors.pop(), /^No faults and completion while you type: The program /);
});
