// Runs ruff: takes {options, files: {name: text}} as JSON from standard input, prints a line for each finding.
const { PositionEncoding, Workspace } = require("@astral-sh/ruff-wasm-nodejs");

const { options, files } = JSON.parse(require("fs").readFileSync(0, "utf8"));
const workspace = new Workspace(options, PositionEncoding.Utf32);
for (const [name, text] of Object.entries(files))
  for (const { code, message, start_location: at } of workspace.check(text)) {
    console.log(`${name}:${at.row}:${at.column}: ${code} ${message}`);
    process.exitCode = 1;
  }
