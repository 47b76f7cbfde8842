// An operation for a bug report. The server has masked card numbers already; whatever else may say
// who the guest is goes here.
import { drawn, sentenceOf } from './diagram.js';

const style = `
  text { font: 12px system-ui, sans-serif; fill: #1d2429; }
  svg { background: #ffffff; }
  .label { paint-order: stroke; stroke: #ffffff; stroke-width: 3px; }
  .head { font-weight: 600; } .head-box { fill: #f6f5f1; stroke: #d9d9d2; }
  .lifeline { stroke: #d9d9d2; } .thread { fill: #56626b; }
  .call line, .reply line { stroke: #1d2429; stroke-width: 1.3; } .reply line { stroke-dasharray: 5 4; }
  .call path, .reply path { fill: #1d2429; }
  .bar { fill: #e3f1ee; stroke: #0f6e66; } .bar.open { stroke-dasharray: 3 3; }
  .soft, .label.soft { fill: #56626b; } .bad line { stroke: #b3261e; } .bad path, .label.bad, .dot.bad { fill: #b3261e; }
  .label.drift, .dot.drift { fill: #8a5200; } .dot.soft { fill: #9aa5ac; }`;

export function redacted(text) {
  return text
    .replace(/\p{Nd}(?:[\s\p{Pd}\p{Pc}\p{Cf}./\\·]*\p{Nd}){11,}/gu, (number) => `•••• ${number.match(/\p{Nd}/gu).slice(-4).join('')}`)
    .replace(/[^\s@<>"]+@[^\s@<>"]+/g, '(address)');
}

export function svgText(operation, steps) {
  const picture = drawn(steps.map((step) => ({ ...step, text: redacted(step.text) })), 900);
  const sheet = document.createElementNS('http://www.w3.org/2000/svg', 'style');
  sheet.textContent = style;
  const title = document.createElementNS('http://www.w3.org/2000/svg', 'title');
  title.textContent = `Operation ${operation.number}: ${operation.name}`;
  picture.prepend(title, sheet);
  return new XMLSerializer().serializeToString(picture);
}

export function plainText(operation, steps) {
  const lines = steps.map((step, index) => `${String(index + 1).padStart(3)}  ${sentenceOf(step)}`);
  return redacted(`Operation ${operation.number}: ${operation.name}\n\n${lines.join('\n')}\n`);
}

export function download(name, type, text) {
  const link = document.createElement('a');
  link.href = URL.createObjectURL(new Blob([text], { type }));
  link.download = name;
  link.click();
  setTimeout(() => URL.revokeObjectURL(link.href), 1000);
}
