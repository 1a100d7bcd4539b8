// Times the library beside what a user would pick instead, in turns, and prints a table.
// usage: node compare.js PROGRAM DEVICES     PROGRAM: tembra-peer; DEVICES: zigbee_real.json
import {spawn} from 'node:child_process';
import {readFileSync} from 'node:fs';
import os from 'node:os';
import {createInterface} from 'node:readline';
import {getCCName} from '@zwave-js/core';
import {findDefinition, setLogger} from 'zigbee-herdsman-converters';

const [program, path] = process.argv.slice(2);
const turns = 21;
const warmUps = 3; // definitions are loaded and code is compiled at first use

const quiet = () => undefined;
setLogger({debug: quiet, info: quiet, warning: quiet, error: quiet});

// What the peer looks at, as its own radio library would hand it over.
function deviceOf({manufacturer, model, clusters}) {
  const endpoints = new Map();
  for (const [cluster, id] of clusters) {
    if (!endpoints.has(id)) endpoints.set(id, {ID: id, inputClusters: [], outputClusters: []});
    endpoints.get(id).inputClusters.push(cluster);
  }
  return {
    type: 'Router', ieeeAddr: '0x0011223344556677', manufacturerName: manufacturer, modelID: model,
    endpoints: [...endpoints.values()], getEndpoint: (id) => endpoints.get(id),
  };
}

const devices = JSON.parse(readFileSync(path)).map(deviceOf);
let known = 0;

async function nanosecondsOf(pieces, run) {
  const start = process.hrtime.bigint();
  await run();
  return Number(process.hrtime.bigint() - start) / pieces;
}

const peer = {
  types: () => nanosecondsOf(devices.length, async () => {
    known = 0;
    for (const device of devices) if (await findDefinition(device)) ++known;
  }),
  names: () => nanosecondsOf(2000 * 256, () => {
    let sum = 0;
    for (let call = 0; call < 2000 * 256; ++call) sum += getCCName(call & 255).length;
    if (sum === 0) throw new Error('no names');
  }),
};

const child = spawn(program, [path], {stdio: ['pipe', 'pipe', 'inherit'], env: {...process.env, TEMBRA_LOG: 'off'}});
const answers = createInterface({input: child.stdout})[Symbol.asyncIterator]();

async function library(what) {
  child.stdin.write(`${what}\n`);
  const {value, done} = await answers.next();
  if (done) throw new Error('the library has ended');
  return Number(value);
}

const median = (values) => values.sort((a, b) => a - b)[values.length >> 1];

async function compare(what) {
  const ours = [];
  const theirs = [];
  for (let turn = 0; turn < warmUps + turns; ++turn) {
    const [our, their] = [await library(what), await peer[what]()];
    if (turn < warmUps) continue;
    ours.push(our);
    theirs.push(their);
  }
  return [median(ours), median(theirs)];
}

const shown = (nanoseconds) => `${nanoseconds.toFixed(nanoseconds < 100 ? 1 : 0)} ns`.padStart(12);
const installed = JSON.parse(readFileSync(new URL('package.json', import.meta.url))).dependencies;

const machine = `${os.cpus()[0].model}, ${os.cpus().length} cores, Node.js ${process.versions.node}`;
console.log(`${machine}; median of ${turns} turns\n`);
for (const [what, title, name, call] of [
  ['types', `type of each of ${devices.length} ZigBee devices`, 'zigbee-herdsman-converters', 'findDefinition'],
  ['names', 'name of each of 256 command classes', '@zwave-js/core', 'getCCName'],
]) {
  const [our, their] = await compare(what);
  console.log(`${title}\n${shown(our)}  this library\n${shown(their)}  ${name} ${installed[name]}, ${call}`);
}
console.log(`${String(known).padStart(12)}  of the devices are in the list of zigbee-herdsman-converters`);
child.stdin.end();
