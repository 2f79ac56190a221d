// A server's stand-in on the network, for fault tests: node tcp_proxy.mjs SERVER-HOST SERVER-PORT. Says first which
// port it listens on.
// What it does with what passes through is said on standard input, a word a line; each is answered on standard output.
//   pass      hand everything on (as at the beginning)
//   hold      take everything, answer nothing, and tell nobody; connections stay open
//   refuse    end every connection, and each new one at once
//   old       hand everything on, and the greeting of an older server
//   foreign   hand everything on, and the server's words for a refusal in no language
//   babble    answer each new connection with something else
//   lose      hand a COMMIT on, and end the connection instead of handing the answer back; once
//   swallow   end both sides when a COMMIT comes, which the server never sees; once
//   state     say which of these holds: pass again after lose and swallow
import net from 'node:net';
import readline from 'node:readline';

const [serverHost, serverPort] = process.argv.slice(2);
let mode = 'pass';
const open = new Set();

function end(...sockets) {
  for (const socket of sockets) socket.destroy();
}

// The two places where the servers say their version.
function asOld(bytes) {
  const text = bytes.toString('latin1');
  return Buffer.from(text.replace(/-10\.\d\d\./, '-10.01.').replace(/(server_version\0)\d\d/, '$109'), 'latin1');
}

function asForeign(bytes) {
  if (!bytes.includes('FATAL')) return bytes;
  return Buffer.from(bytes.toString('latin1').replace(/[a-z]+(?= )|(?<= )[a-z]+/g, word => '?'.repeat(word.length)), 'latin1');
}

const proxy = net.createServer(client => {
  if (mode === 'refuse') return end(client);
  if (mode === 'babble') return client.end('HTTP/1.1 400 Bad Request\r\nContent-Length: 0\r\n\r\n');
  const server = net.connect(Number(serverPort), serverHost);
  open.add(client);
  let answerIsLost = false;
  client.on('data', bytes => {
    const commits = bytes.includes('COMMIT');
    if (mode === 'hold') return;
    if (commits && mode === 'swallow') {
      mode = 'pass';
      return end(client, server);
    }
    if (commits && mode === 'lose') {
      mode = 'pass';
      answerIsLost = true;
    }
    server.write(bytes);
  });
  server.on('data', bytes => {
    if (mode === 'hold') return;
    if (answerIsLost) return end(client, server);
    client.write(mode === 'old' ? asOld(bytes) : mode === 'foreign' ? asForeign(bytes) : bytes);
  });
  for (const [one, other] of [[client, server], [server, client]]) {
    one.on('error', () => {});
    one.on('close', () => {
      open.delete(client);
      if (mode !== 'hold') end(other);
    });
  }
});
proxy.listen(0, '127.0.0.1', () => console.log(proxy.address().port));
readline.createInterface({ input: process.stdin }).on('line', word => {
  if (word !== 'state') mode = word;
  if (mode === 'refuse') end(...open);
  console.log(mode);
}).on('close', () => process.exit(0));
