// Texts from a file as they may be shown: whatever would act on a terminal or a
// page, or reorder or hide text there, as an escape.
const hidden = /[\p{Cc}\p{Cf}\p{Cs}\p{Co}\p{Zl}\p{Zp}]/gu;

export const visible = (text) => text.replace(hidden, (character) => {
  const digits = character.codePointAt(0).toString(16);
  return digits.length > 4 ? `\\u{${digits}}` : `\\u${digits.padStart(4, '0')}`;
});
