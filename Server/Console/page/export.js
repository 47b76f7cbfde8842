// An operation for a bug report. The server has masked card numbers already; whatever else may say
// who the guest is goes here.
import { drawn, sentenceOf } from './diagram.js';
import { find, svg } from './dom.js';

export function redacted(text) {
  return text
    .replace(/\p{Nd}(?:[\s\p{Pd}\p{Pc}\p{Cf}./\\·]*\p{Nd}){11,}/gu, (number) => `•••• ${number.match(/\p{Nd}/gu).slice(-4).join('')}`)
    .replace(/[^\s@<>"]+@[^\s@<>"]+/g, '(address)');
}

const looks = ['fill', 'stroke', 'stroke-width', 'stroke-dasharray', 'paint-order', 'font-family', 'font-size', 'font-weight'];

/** As it is drawn in the light, with all that other programs need to draw it. */
export function svgText(operation, steps) {
  const picture = drawn(steps.map((step) => ({ ...step, text: redacted(step.text), result: redacted(step.result ?? '') })), 900);
  find('diagram').append(picture);
  Object.assign(picture.style, { colorScheme: 'light', background: '#ffffff' });
  for (const part of picture.querySelectorAll('*')) {
    const style = getComputedStyle(part);
    for (const name of looks) part.setAttribute(name, style[name]);
  }
  picture.prepend(svg('title', {}, `Operation ${operation.number}: ${operation.name}`));
  picture.remove();
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
