// The colors of lines, on paper and on a dark screen.

const PAPER = { back: '#ffffff', mark: '#0b62d6', isDark: false };
const NIGHT = { back: '#15181d', mark: '#6fb0ff', isDark: true };

// As WCAG defines it, from 0 to 1.
function luminance(rgb) {
  const part = (shift) => {
    const value = ((rgb >> shift) & 255) / 255;
    return value <= 0.04045 ? value / 12.92 : ((value + 0.055) / 1.055) ** 2.4;
  };
  return 0.2126 * part(16) + 0.7152 * part(8) + 0.0722 * part(0);
}

function mixed(rgb, other, share) {
  const part = (shift) => Math.round(((rgb >> shift) & 255) * (1 - share) + ((other >> shift) & 255) * share);
  return (part(16) << 16) | (part(8) << 8) | part(0);
}

// Black and what is nearly as dark becomes as light as it takes to be seen.
function colorOn(scheme, rgb) {
  let shown = rgb;
  if (scheme.isDark) {
    const LEAST = 0.2;
    for (let share = 0; luminance(shown) < LEAST && share < 1; share += 0.1) {
      shown = mixed(rgb, 0xffffff, share + 0.1);
    }
    shown = rgb === 0 ? 0xe4e8ee : shown;
  }
  return `#${shown.toString(16).padStart(6, '0')}`;
}
