// An operation for a bug report. The server has masked card numbers already; whatever else may say
// who the guest is goes here.
import { drawn, sentenceOf } from './diagram.js';
import { find, svg } from './dom.js';

export function redacted(text) {
  return text
    .replace(/\p{Nd}(?:[\s\p{Pd}\p{Pc}\p{Cf}./\\·]*\p{Nd}){11,}/gu, (number) => `•••• ${number.match(/\p{Nd}/gu).slice(-4).join('')}`)
    .replace(/[^\s@<>"]+@[^\s@<>"]+/g, '(address)');
}

/** As browsers draw it in the light, with the style sheet that it needs. */
export async function svgText(operation, steps) {
  const css = await (await fetch('console.css')).text();
  const width = 900;
  const picture = drawn(steps.map((step) => ({ ...step, text: redacted(step.text), result: redacted(step.result ?? '') })));
  const whole = svg('svg', { width }, svg('title', {}, `Operation ${operation.number}: ${operation.name}`), svg('foreignObject', { width, height: '100%' }, picture));
  whole.style.colorScheme = 'light';
  find('diagram').append(whole);
  whole.setAttribute('height', picture.scrollHeight);
  whole.remove();
  whole.prepend(svg('style', {}, css));
  return new XMLSerializer().serializeToString(whole);
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
