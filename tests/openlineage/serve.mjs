// A lineage server for tests. Runs a command with a server to post to and prints what that was asked.
//
//   node serve.mjs ANSWER... -- COMMAND [ARGUMENT...]
//
// The first request gets the first answer and so on, all later ones the last. An answer is a status ("201"), a
// status with a time to wait ("429:1"), "slow" (none for a long while), "drop" (the connection is closed) or
// "echo" (400 with the request's own Authorization and address in the body). URL in an argument stands for the server's
// address; in what is printed PORT stands for its port.
import { spawn } from 'node:child_process';
import { createServer } from 'node:http';

const separator = process.argv.indexOf('--');
const answers = process.argv.slice(2, separator);
const [command, ...args] = process.argv.slice(separator + 1);
const requests = [];
const connections = new Set();

function answer(request, response, text) {
  const [status, wait] = text.split(':');
  if (status === 'slow') return;
  if (status === 'drop') return void request.socket.destroy();
  const isEcho = status === 'echo';
  const code = isEcho ? 400 : Number(status);
  const headers = { ...(wait && { 'Retry-After': wait }), ...(code === 307 && { Location: 'http://127.0.0.1:1/other' }) };
  response.writeHead(code, headers);
  response.end(isEcho ? `refused ${request.headers.authorization} at ${request.url}\n` : code >= 400 ? `no, ${code}\n` : '');
}

function describe(request, body) {
  const { method, url, headers } = request;
  const event = JSON.parse(body);
  const kind = event.job ? event.job.name : event.dataset.name;
  return `${method} ${url} ${headers['content-type']} ${headers.authorization ?? '-'} ${kind}`;
}

const server = createServer((request, response) => {
  const chunks = [];
  request.on('data', (chunk) => chunks.push(chunk));
  request.on('end', () => {
    requests.push(describe(request, Buffer.concat(chunks).toString('utf8')));
    answer(request, response, answers[Math.min(requests.length, answers.length) - 1]);
  });
});
server.on('connection', (socket) => connections.add(socket));
server.listen(0, '127.0.0.1', () => {
  const { port } = server.address();
  const child = spawn(
    command,
    args.map((arg) => arg.replace('URL', `127.0.0.1:${port}`)),
    { stdio: ['ignore', 'pipe', 'pipe'] },
  );
  let output = '';
  for (const stream of [child.stdout, child.stderr]) stream.on('data', (text) => (output += text));
  child.on('close', (code) => {
    output = output.replaceAll(`:${port}`, ':PORT').replace(/after \d+ ms/, 'after N ms');
    console.log(`${output}[exit ${code}, connections ${connections.size}]`);
    for (const request of requests) console.log(request);
    server.closeAllConnections();
    server.close();
  });
});
