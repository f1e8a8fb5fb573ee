morvo_pet(morvo SOURCES Morvo
  SETS idle sleep watching code droop celebrate alert greet petted curious walk carried tossed)
